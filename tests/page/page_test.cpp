// The page: its data, the record that it is made from, and the commands that make it. What the
// host refuses is in library/host/refusals_test.cpp, what a browser shows in the Python files here.
#include "host/page/page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "common/text.h"
#include "host/host_error.h"
#include "records/record_reader.h"
#include "support/host_program.h"
#include "support/temp_folder.h"

namespace host {
namespace {

using nlohmann::json;
using test_support::ChildResult;
using test_support::ReadFile;
using test_support::RunHost;
using test_support::WriteFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::int64_t kMinute = 60000;
constexpr std::int64_t kDay = 1440 * kMinute;

records::RecordedEvent List(std::int64_t time, const std::vector<std::string>& keys) {
    records::RecordedEvent event{time, {records::kDeviceListEventId, {}}};
    for (const std::string& key : keys) {
        event.event.fields.push_back({key, "[]"});
    }
    return event;
}

records::RecordedEvent Bios(std::int64_t time, const std::string& value) {
    return {time, {records::kBiosInfoEventId, {{"Product", value}}}};
}

TEST(DeviceListNumbers, AreTheSameForThePartsOfAList) {
    EXPECT_THAT(NumberDeviceLists({Bios(0, ""), List(kDay, {"HIDList", "PrinterList"}),
                                   Bios(kDay, ""), List(kDay + kMinute, {"HIDList"}),
                                   List(2 * kDay + 2 * kMinute, {"HIDList"})}),
                ElementsAre(std::nullopt, 0, std::nullopt, 0, 1));
}

TEST(DeviceListNumbers, GoOnWhenAKeyComesBackThoughTheClockWasSet) {
    EXPECT_THAT(NumberDeviceLists({List(kDay, {"HIDList", "PrinterList"}), List(kDay, {"HIDList"}),
                                   List(kDay, {"HIDList", "PrinterList"})}),
                ElementsAre(0, 0, 1));
}

/// The data that a page holds, as it stands there.
std::string DataOf(const std::string& page) {
    const std::string open = R"(<script type="application/json" id="record">)";
    const std::size_t begin = page.find(open) + open.size();
    return page.substr(begin, page.find("</script>", begin) - begin);
}

TEST(Page, HoldsWhatWasSentAndLogged) {
    const records::RunRecord record{
        "A run", 3, {Bios(5, "X\xFC"), List(6, {"HIDList"})}, {{7, 4, "line"}}};
    EXPECT_EQ(json::parse(DataOf(MakePage(record))), json::parse(R"({
        "origin": "A run", "firstList": 3,
        "events": [
            {"time": 5, "id": 992614500, "bytes": 9, "fields": [["Product", "Xü", 2]]},
            {"time": 6, "id": 992614533, "bytes": 9, "fields": [["HIDList", "[]", 2]], "list": 0}],
        "log": [{"time": 7, "level": 4, "text": "line"}]})"));
}

TEST(Page, HoldsNoTextThatMeansSomethingToMarkupWhateverItIs) {
    const std::string evil = "</script><!--<script>&amp;@SCRIPT@\xE2\x80\xA8\xE2\x80\xA9'\"\\";
    const records::RunRecord record{evil, std::nullopt, {Bios(0, evil)}, {{0, 3, evil}}};
    const std::string data = DataOf(MakePage(record));
    EXPECT_EQ(data.find_first_of("<>&"), std::string::npos);
    for (const char character : data) {
        ASSERT_GE(character, ' ');
        ASSERT_LE(character, '~');
    }
    const json parsed = json::parse(data);
    EXPECT_EQ(parsed.at("origin"), evil);
    EXPECT_EQ(parsed.at("events")[0].at("fields")[0][1], evil);
    EXPECT_EQ(parsed.at("log")[0].at("text"), evil);
}

TEST(Page, MakesElementsWithoutReadingMarkupAndLoadsNothing) {
    const std::string page = MakePage({});
    for (const char* const word :
         {"innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "eval(", "Function(",
          "DOMParser", "createContextualFragment", "setHTML", "srcdoc", "fetch(", "XMLHttpRequest",
          "import(", "url(", "http:", "https:"}) {
        EXPECT_THAT(page, Not(HasSubstr(word)));
    }
    EXPECT_THAT(page, HasSubstr("content=\"default-src 'none'; style-src 'sha256-"));
    EXPECT_THAT(page, HasSubstr("='; base-uri 'none'; form-action 'none'\""));
}

TEST(RecordedTime, IsReadAsUtcInARecordAndAsLocalInALog) {
    EXPECT_EQ(records::ParseUtcTime("1970-01-01T00:00:00.000Z"), 0);
    EXPECT_EQ(records::ParseUtcTime("2026-11-20T18:54:03.120Z"), 1795200843120);
    for (const char* const text :
         {"", "2026-11-20 18:54:03.120Z", "2026-11-20T18:54:03.12Z", "2026-13-20T18:54:03.120Z",
          "2026-11-20T18:54:03.120Z ", "2026-11-20T1a:54:03.120Z"}) {
        EXPECT_EQ(records::ParseUtcTime(text), std::nullopt) << text;
    }
    const auto winter = records::ParseLocalTime("2026-01-20 18:54:03.120");
    const auto utc = records::ParseUtcTime("2026-01-20T18:54:03.120Z");
    ASSERT_TRUE(winter && utc);
    // Zones differ from UTC by whole quarters of an hour, by fourteen hours at most.
    EXPECT_EQ((*winter - *utc) % 900000, 0);
    EXPECT_LE(std::abs(*winter - *utc), 14 * 3600000LL);
}

constexpr char kEvent[] =
    R"({"time":"2026-11-20T18:54:03.120Z","id":992614500,"fields":[{"key":"Product","value":"ü"}]})";

TEST(EventRecord, IsReadInItsOrderWithoutEmptyLines) {
    const auto events = records::ParseEventRecord(
        std::string(kEvent) + "\n\r\n" +
            R"({"time":"2026-11-20T18:54:04.000Z","id":-5,"fields":[{"key":"","value":"\u0000"}]})",
        "r.ndjson");
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].time, 1795200843120);
    EXPECT_EQ(events[0].event.id, 992614500);
    ASSERT_EQ(events[0].event.fields.size(), 1U);
    EXPECT_EQ(events[0].event.fields[0].key, "Product");
    EXPECT_EQ(events[0].event.fields[0].value, "ü");
    EXPECT_EQ(events[1].event.id, -5);
    EXPECT_EQ(events[1].event.fields[0].value, std::string(1, '\0'));
}

TEST(Log, IsReadWithTimeLevelAndTextAndRefusedWhereALineIsNone) {
    const std::string good = "2026-11-20 19:54:03.120 [4] a [3] b(F)\r\n";
    const auto lines = records::ParseLog(good, "log.txt");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].time, records::ParseLocalTime("2026-11-20 19:54:03.120"));
    EXPECT_EQ(lines[0].level, 4);
    EXPECT_EQ(lines[0].text, "a [3] b(F)");
    for (const char* const line :
         {"hello", "2026-11-20 19:54:03.120", "2026-11-20 19:54:03.120 [x] a",
          "2026-11-20T19:54:03.120Z[3] a", "2026-11-20 19:54:03.120 [3]"}) {
        try {
            records::ParseLog(good + line, "log.txt");
            ADD_FAILURE() << line;
        } catch (const BadInput& error) {
            EXPECT_STREQ(error.what(),
                         "log.txt:2: not a log line; it begins like \"2026-11-20 19:54:03.120 [3] "
                         "\", as --log writes it");
        }
    }
}

class PageCommand : public testing::Test {
protected:
    std::wstring File(const std::wstring& name) const { return folder.Path() + L"\\" + name; }

    const test_support::TempFolder folder;
};

TEST_F(PageCommand, MakesAPageFromARecordAndItsLogInPlaceOfAnOlderOne) {
    WriteFile(File(L"events.ndjson"), std::string(kEvent) + "\n" + kEvent + "\n");
    WriteFile(File(L"log.txt"), "2026-11-20 19:54:03.120 [3] a(F)\n");
    WriteFile(File(L"page.html"), "older");
    const ChildResult result = RunHost({L"--page", File(L"page.html"), L"--from",
                                        File(L"events.ndjson"), L"--from-log", File(L"log.txt")});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "The page is in " + workbench::ToUtf8(File(L"page.html")) +
                                 ", with 2 events and 1 log line\n");
    const json data = json::parse(DataOf(ReadFile(File(L"page.html"))));
    EXPECT_EQ(data.at("origin"), "The record events.ndjson and the log log.txt");
    EXPECT_EQ(data.at("events").size(), 2U);
    EXPECT_EQ(data.at("log").size(), 1U);
    EXPECT_TRUE(data.at("firstList").is_null());
    EXPECT_FALSE(std::filesystem::exists(File(L"page.html.unfinished")));
}

TEST_F(PageCommand, MakesAPageOfARunThatHoldsWhatTheRunRecorded) {
    const ChildResult result =
        RunHost({L"--seconds", L"1", L"--quiet", L"--events", File(L"run.ndjson"), L"--log",
                 File(L"run.txt"), L"--page", File(L"run.html")});
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("What left the machine, and why, is in " +
                                         workbench::ToUtf8(File(L"run.html"))));
    const std::string events = ReadFile(File(L"run.ndjson"));
    const std::string log = ReadFile(File(L"run.txt"));
    json run = json::parse(DataOf(ReadFile(File(L"run.html"))));
    json record = json::parse(DataOf(MakePage(
        {"", std::nullopt, records::ParseEventRecord(events, ""), records::ParseLog(log, "")})));
    ASSERT_FALSE(run.at("events").empty());
    ASSERT_FALSE(run.at("log").empty());
    EXPECT_EQ(run.at("firstList"), 1);
    EXPECT_THAT(run.at("origin"), testing::StartsWith("A run on "));
    // Each notes its own time.
    for (json* const data : {&run, &record}) {
        for (const char* const list : {"events", "log"}) {
            for (json& one : data->at(list)) {
                one.erase("time");
            }
        }
    }
    EXPECT_EQ(run.at("events"), record.at("events"));
    EXPECT_EQ(run.at("log"), record.at("log"));
}

}  // namespace
}  // namespace host
