// --page, --from and --from-log of the built host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/host_error.h"
#include "host/win32_error.h"
#include "library/host/host_program.h"
#include "standins/common/text.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using host::Win32ErrorText;
using nlohmann::json;
using standins::ToUtf8;
using test_support::ChildResult;
using testing::HasSubstr;

constexpr char kEvent[] =
    R"({"time":"2026-11-20T18:54:03.120Z","id":992614500,"fields":[{"key":"Product","value":"X1"}]})";

/// The data that a page holds.
json DataOf(const std::string& page) {
    const std::string open = R"(<script type="application/json" id="record">)";
    const std::size_t begin = page.find(open) + open.size();
    return json::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

class PageCommand : public testing::Test {
protected:
    PageCommand() {
        WriteFile(File(L"events.ndjson"), std::string(kEvent) + "\n" + kEvent + "\n");
        WriteFile(File(L"log.txt"), "2026-11-20 19:54:03.120 [3] a(F)\n");
        WriteFile(File(L"broken.ndjson"), std::string(kEvent) + "\n{\"time\"");
        WriteFile(File(L"broken.txt"), "2026-11-20 19:54:03.120 [3] a(F)\nhello\n");
        WriteFile(File(L"kept.html"), "kept");
        std::filesystem::create_directory(File(L"folder"));
    }

    std::wstring File(const std::wstring& name) const { return folder.Path() + L"\\" + name; }
    std::string Utf8(const std::wstring& name) const { return ToUtf8(File(name)); }

    /// The host refuses in one line, and leaves the page and everything else as it was.
    void ExpectRefused(const std::vector<std::wstring>& arguments, const std::string& message) {
        const std::string before = Listing();
        const ChildResult result = RunHost(arguments);
        EXPECT_EQ(result.exitCode, static_cast<DWORD>(host::ExitCode::BadInput));
        EXPECT_EQ(result.errors, "tallyport_host: " + message + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(ReadFile(File(L"kept.html")), "kept");
        EXPECT_EQ(Listing(), before);
    }

    test_support::TempFolder folder;

private:
    std::string Listing() const {
        std::string names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
            names += entry.path().filename().string() + "\n";
        }
        return names;
    }
};

TEST_F(PageCommand, MakesAPageFromARecordAndItsLogInPlaceOfAnOlderOne) {
    const ChildResult result = RunHost({L"--page", File(L"kept.html"), L"--from",
                                        File(L"events.ndjson"), L"--from-log", File(L"log.txt")});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "The page is in " + Utf8(L"kept.html") + ", with 2 events and 1 log line\n");
    const json data = DataOf(ReadFile(File(L"kept.html")));
    EXPECT_EQ(data.at("origin"), "The record events.ndjson and the log log.txt");
    EXPECT_EQ(data.at("events").size(), 2U);
    EXPECT_EQ(data.at("log").size(), 1U);
    EXPECT_TRUE(data.at("firstList").is_null());
    EXPECT_FALSE(std::filesystem::exists(File(L"kept.html.unfinished")));
}

TEST_F(PageCommand, MakesAPageOfARunThatHoldsWhatTheRunRecorded) {
    const ChildResult result =
        RunHost({L"--seconds", L"1", L"--quiet", L"--events", File(L"run.ndjson"), L"--log",
                 File(L"run.txt"), L"--page", File(L"run.html")});
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_THAT(result.output,
                HasSubstr("What left the machine, and why, is in " + Utf8(L"run.html")));
    const json data = DataOf(ReadFile(File(L"run.html")));
    const auto events = ReadRecord(File(L"run.ndjson"));
    ASSERT_EQ(data.at("events").size(), events.size());
    ASSERT_FALSE(events.empty());
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_EQ(data.at("events")[i].at("id"), events[i].at("id"));
        const json& fields = events[i].at("fields");
        ASSERT_EQ(data.at("events")[i].at("fields").size(), fields.size());
        for (std::size_t k = 0; k < fields.size(); ++k) {
            EXPECT_EQ(data.at("events")[i].at("fields")[k][0], fields[k].at("key"));
            EXPECT_EQ(data.at("events")[i].at("fields")[k][1], fields[k].at("value"));
        }
    }
    EXPECT_EQ(data.at("firstList"), 1);
    const auto lines = LinesOf(ReadFile(File(L"run.txt")));
    ASSERT_EQ(data.at("log").size(), lines.size());
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(lines[0], HasSubstr(data.at("log")[0].at("text").get<std::string>()));
}

TEST_F(PageCommand, MakesAPageOfARecordWithoutEvents) {
    WriteFile(File(L"empty.ndjson"), "");
    const ChildResult result =
        RunHost({L"--page", File(L"new.html"), L"--from", File(L"empty.ndjson")});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_TRUE(DataOf(ReadFile(File(L"new.html"))).at("events").empty());
}

TEST_F(PageCommand, TellsFileAndLineOfABrokenRecordAndKeepsTheOlderPage) {
    ExpectRefused({L"--page", File(L"kept.html"), L"--from", File(L"broken.ndjson")},
                  Utf8(L"broken.ndjson") +
                      ":2: not valid JSON at column 8; mend or remove the line, or record the run "
                      "again with --events");
    ExpectRefused({L"--page", File(L"kept.html"), L"--from", File(L"events.ndjson"), L"--from-log",
                   File(L"broken.txt")},
                  Utf8(L"broken.txt") +
                      ":2: not a log line; it begins like \"2026-11-20 19:54:03.120 [3] \", as "
                      "--log writes it");
}

TEST_F(PageCommand, TellsWhichFileIsMissing) {
    ExpectRefused({L"--page", File(L"kept.html"), L"--from", File(L"none.ndjson")},
                  "cannot read the record of events '" + Utf8(L"none.ndjson") +
                      "': " + Win32ErrorText(ERROR_FILE_NOT_FOUND) + "; name another file");
    ExpectRefused({L"--page", File(L"kept.html"), L"--from", File(L"events.ndjson"), L"--from-log",
                   File(L"none.txt")},
                  "cannot read the log '" + Utf8(L"none.txt") +
                      "': " + Win32ErrorText(ERROR_FILE_NOT_FOUND) + "; name another file");
}

TEST_F(PageCommand, TellsWhenThePageCannotBeWrittenWithOrWithoutARun) {
    const std::string noFolder = "cannot write the file of --page, '" + Utf8(L"none\\p.html") +
                                 "': " + Win32ErrorText(ERROR_PATH_NOT_FOUND) +
                                 "; name another file";
    const std::string isFolder = "cannot write the file of --page, '" + Utf8(L"folder") +
                                 "': " + Win32ErrorText(ERROR_ACCESS_DENIED) +
                                 "; name another file";
    ExpectRefused({L"--page", File(L"none\\p.html"), L"--from", File(L"events.ndjson")}, noFolder);
    ExpectRefused({L"--page", File(L"folder"), L"--from", File(L"events.ndjson")}, isFolder);
    ExpectRefused({L"--page", File(L"none\\p.html"), L"--seconds", L"1"}, noFolder);
    ExpectRefused({L"--page", File(L"folder"), L"--seconds", L"1"}, isFolder);
}

TEST_F(PageCommand, TellsWhichOptionsDoNotGoTogether) {
    ExpectRefused({L"--from", File(L"events.ndjson")},
                  "--from shows a record as a page; name the page's file with --page");
    ExpectRefused({L"--page", File(L"kept.html"), L"--from-log", File(L"log.txt")},
                  "--from-log goes with a record of events; name that with --from");
    ExpectRefused(
        {L"--page", File(L"kept.html"), L"--from", File(L"events.ndjson"), L"--seconds", L"1"},
        "--seconds is for a run, and --from starts none; leave one of them out");
    ExpectRefused(
        {L"--page", File(L"events.ndjson"), L"--from", File(L"events.ndjson")},
        "--page and --from name the same file, '" + Utf8(L"events.ndjson") + "'; name two");
    ExpectRefused(
        {L"--page", File(L"kept.html"), L"--events", File(L"kept.html"), L"--seconds", L"1"},
        "--events and --page name the same file, '" + Utf8(L"kept.html") + "'; name two");
}

}  // namespace
}  // namespace host_test
