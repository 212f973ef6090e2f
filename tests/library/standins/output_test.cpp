// What the stand-ins write: log lines, the record of events, and warnings.
#include <windows.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "common/text.h"
#include "standins/log_kit/log_kit_control.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "standins/xeevent/xeevent_control.h"
#include "support/temp_folder.h"

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    Lines lines;
    for (std::string line; std::getline(file, line) && !file.eof();) {
        lines.push_back(line);
    }
    return lines;
}

/// Sends what this process writes to a standard stream into a file. The C runtime's own streams,
/// and so the test framework's output, are not affected.
class StreamCapture {
public:
    explicit StreamCapture(DWORD streamToCapture)
        : stream(streamToCapture),
          original(GetStdHandle(stream)),
          replacement(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)) {
        SetStdHandle(stream, replacement);
    }
    ~StreamCapture() {
        SetStdHandle(stream, original);
        CloseHandle(replacement);
    }
    StreamCapture(const StreamCapture&) = delete;
    StreamCapture& operator=(const StreamCapture&) = delete;

    Lines Seen() const { return LinesOf(path); }

private:
    const test_support::TempFolder folder;
    const std::wstring path = folder.Path() + L"\\stream";
    const DWORD stream;
    const HANDLE original;
    const HANDLE replacement;
};

void Log(LOG_MESSAGE_LEVEL level, const std::wstring& text) {
    std::wstringstream stream;
    stream << text;
    VrLogger::GetInstance()->Log(level, stream);
}

class Output : public testing::Test {
protected:
    void TearDown() override {
        LogKit_Reset();
        XeEvent_Reset();
    }

    const test_support::TempFolder folder;
    const std::wstring path = folder.Path() + L"\\file";
};

TEST_F(Output, OfTheLogHasTimeAndLevelAndOneLineForEachText) {
    const StreamCapture output(STD_OUTPUT_HANDLE);
    ASSERT_EQ(LogKit_OpenFile(path.c_str()), 0);
    Log(LOG_LEVEL_NORMAL, L"\u00fc\u5c4f\U0001F5A8");
    EXPECT_EQ(LogKit_OpenFile(L"no-such-folder\\log.txt"), ERROR_PATH_NOT_FOUND);
    Log(LOG_LEVEL_ERROR, L"one\r\ntwo");
    const Lines lines = LinesOf(path);
    ASSERT_EQ(lines.size(), 2u);
    const std::string time = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )";
    EXPECT_TRUE(std::regex_match(lines[0],
                                 std::regex(time + "\\[3\\] \xC3\xBC\xE5\xB1\x8F\xF0\x9F\x96\xA8")))
        << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(time + R"(\[4\] one  two)"))) << lines[1];
    EXPECT_EQ(output.Seen(), lines);

    LogKit_SetConsole(0);
    LogKit_CloseFile();
    Log(LOG_LEVEL_ERROR, L"unseen");
    EXPECT_EQ(LinesOf(path).size(), 2u);
    EXPECT_EQ(output.Seen().size(), 2u);
}

TEST_F(Output, OfEventsIsOneLineOfJsonEach) {
    ASSERT_EQ(XeEvent_OpenRecord(path.c_str()), 0);
    XeEvent event(992614500);
    event.PutString("Version", "a\"b\n")
        .PutString("Product", "")
        .PutString("Version", "\xE5\xB1\x8F");
    event = event.PutString("Product", "Caf\xE9");
    EXPECT_EQ(XeEvent_OpenRecord(L"no-such-folder\\events.ndjson"), ERROR_PATH_NOT_FOUND);
    XeView::Report(event);
    XeEvent_CloseRecord();
    XeView::Report(event);

    const Lines lines = LinesOf(path);
    ASSERT_EQ(lines.size(), 1u);
    const auto record = nlohmann::ordered_json::parse(lines[0]);
    EXPECT_TRUE(std::regex_match(record["time"].get<std::string>(),
                                 std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)")));
    EXPECT_EQ(record["id"], 992614500);
    auto fields = nlohmann::ordered_json::parse(
        R"([{"key":"Version","value":"a\"b\n"},{"key":"Product","value":""},)"
        R"({"key":"Version","value":"\u5c4f"},{"key":"Product","value":null}])");
    // What is not UTF-8 is text in the ANSI code page.
    wchar_t wide[8] = L"";
    MultiByteToWideChar(CP_ACP, 0, "Caf\xE9", -1, wide, 8);
    fields[3]["value"] = workbench::ToUtf8(wide);
    EXPECT_EQ(record["fields"], fields);
}

TEST_F(Output, OfSeveralThreadsIsInOneOrderEverywhere) {
    constexpr int kEach = 50;
    const std::wstring events = folder.Path() + L"\\events";
    LogKit_SetConsole(0);
    LogKit_OpenFile(path.c_str());
    XeEvent_OpenRecord(events.c_str());
    Lines lines;
    std::vector<int> ids;
    LogKit_SetSink(
        [](void* context, int, const wchar_t* text) {
            static_cast<Lines*>(context)->push_back(workbench::ToUtf8(text));
        },
        &lines);
    XeEvent_SetSink([](void* context, int id, const XeEventField*,
                       size_t) { static_cast<std::vector<int>*>(context)->push_back(id); },
                    &ids);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int i = thread * kEach; i < (thread + 1) * kEach; ++i) {
                Log(LOG_LEVEL_NORMAL, L"line " + std::to_wstring(i));
                XeEvent event(i);
                XeView::Report(event.PutString("text", std::string(300, 't')));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const Lines written = LinesOf(path);
    const Lines recorded = LinesOf(events);
    ASSERT_EQ(written.size(), std::size_t{4 * kEach});
    ASSERT_EQ(recorded.size(), written.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
        EXPECT_EQ(written[i].substr(written[i].find("] ") + 2), lines[i]);
        EXPECT_EQ(nlohmann::json::parse(recorded[i])["id"], ids[i]);
    }
}

TEST_F(Output, WarnsOfWhatTheEventServiceDoesNotTakeAndDeliversItAllTheSame) {
    const StreamCapture errors(STD_ERROR_HANDLE);
    XeEvent_OpenRecord(path.c_str());
    const std::string longestKey(XeEvent::MAX_KEY_LEN, 'k');
    const std::string longestValue(XeEvent::MAX_VALUE_LEN, 'v');
    XeEvent event(12);
    for (std::size_t i = 0; i < XeEvent::MAX_PAIR_NUM; ++i) {
        event.PutString(longestKey, longestValue);
    }
    XeView::Report(event);
    EXPECT_EQ(errors.Seen(), Lines());

    event.PutString(longestKey + "k", longestValue + "v");
    XeView::Report(event);
    const std::string key = "\"" + longestKey + "k\"";
    const std::string end = " that the event service takes";
    EXPECT_EQ(errors.Seen(),
              (Lines{"xeevent: event 12: it has 257 fields, more than the 256" + end,
                     "xeevent: event 12: the key " + key + " has 33 bytes, more than the 32" + end,
                     "xeevent: event 12: the value of " + key +
                         " has 1025 bytes, more than the 1024" + end}));
    const auto record = nlohmann::json::parse(LinesOf(path).at(1));
    EXPECT_EQ(record["fields"].size(), 257u);
    EXPECT_EQ(record["fields"][256]["value"], longestValue + "v");
}

TEST_F(Output, WarnsOfRegistrationsThatDoNotFit) {
    const StreamCapture errors(STD_ERROR_HANDLE);
    PluginRegistrationInfo first = {"first", nullptr, "", nullptr};
    PluginRegistrationInfo second = {"second", nullptr, "", nullptr};
    RegisterPlugin(&first);
    EXPECT_EQ(errors.Seen(), Lines());
    RegisterPlugin(&first);
    UnRegisterPlugin(&second);
    RegisterPlugin(nullptr);
    const std::string library = "ZedPluginsManager: ";
    EXPECT_EQ(errors.Seen(),
              (Lines{library + "RegisterPlugin got a record that is registered already; ignored",
                     library + "UnRegisterPlugin got a record that is not registered; ignored",
                     library + "RegisterPlugin got a null pointer instead of a registration "
                               "record; ignored"}));
    EXPECT_EQ(ZedPluginsManager_Count(), 1u);
    UnRegisterPlugin(&first);
}

}  // namespace
