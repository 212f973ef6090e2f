#include <gtest/gtest.h>
#include <windows.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "library/standins/temporary_file.h"
#include "standins/xeevent/xeevent_control.h"

namespace {

using standins_test::TemporaryFile;

class EventRecord : public testing::Test {
protected:
    void SetUp() override { XeEvent_Reset(); }
    void TearDown() override { XeEvent_Reset(); }
};

TEST_F(EventRecord, HoldsEachEventAsOneLineOfJson) {
    const TemporaryFile record;
    ASSERT_EQ(XeEvent_OpenRecord(record.Path()), 0);
    XeEvent first(992614500);
    first.PutString("Version", "a\"b\n").PutString("Product", "").PutString("Version", "again");
    XeView::Report(first);
    ASSERT_EQ(XeEvent_OpenRecord(record.Path()), 0);
    XeEvent second(7);
    XeView::Report(second);
    XeEvent_CloseRecord();
    XeView::Report(second);

    const std::vector<std::string> lines = record.Lines();
    ASSERT_EQ(lines.size(), 2u);
    const auto event = nlohmann::ordered_json::parse(lines[0]);
    EXPECT_TRUE(std::regex_match(event["time"].get<std::string>(),
                                 std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)")));
    EXPECT_EQ(event["id"], 992614500);
    const auto fields = nlohmann::ordered_json::parse(
        R"([{"key":"Version","value":"a\"b\n"},{"key":"Product","value":""},)"
        R"({"key":"Version","value":"again"}])");
    EXPECT_EQ(event["fields"], fields);
    EXPECT_EQ(nlohmann::ordered_json::parse(lines[1])["fields"], nlohmann::ordered_json::array());
}

TEST_F(EventRecord, StatesTheTimeInUtc) {
    TIME_ZONE_INFORMATION zone = {};
    if (GetTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID || zone.Bias == 0) {
        GTEST_SKIP() << "local time is UTC here";
    }
    const TemporaryFile record;
    XeEvent_OpenRecord(record.Path());
    SYSTEMTIME before = {};
    GetSystemTime(&before);
    XeEvent event(1);
    XeView::Report(event);
    SYSTEMTIME after = {};
    GetSystemTime(&after);

    const auto hour = [](const SYSTEMTIME& time) {
        return (time.wHour < 10 ? "0" : "") + std::to_string(time.wHour);
    };
    const std::string recorded =
        nlohmann::json::parse(record.Lines().at(0))["time"].get<std::string>().substr(11, 2);
    EXPECT_TRUE(recorded == hour(before) || recorded == hour(after)) << recorded;
}

TEST_F(EventRecord, HoldsValidUtf8AsItIs) {
    const TemporaryFile record;
    XeEvent_OpenRecord(record.Path());
    XeEvent event(1);
    event.PutString("list",
                    "Gr\xC3\xB6\xC3\x9F"
                    "e \xE5\xB1\x8F");
    XeView::Report(event);
    const auto read = nlohmann::json::parse(record.Lines().at(0));
    EXPECT_EQ(read["fields"][0]["value"],
              "Gr\xC3\xB6\xC3\x9F"
              "e \xE5\xB1\x8F");
}

TEST_F(EventRecord, HoldsOtherBytesAsTextInTheAnsiCodePage) {
    const TemporaryFile record;
    XeEvent_OpenRecord(record.Path());
    XeEvent event(1);
    event.PutString("Product", "Caf\xE9");
    XeView::Report(event);

    wchar_t wide[8] = L"";
    MultiByteToWideChar(CP_ACP, 0, "Caf\xE9", -1, wide, 8);
    char expected[32] = "";
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, expected, sizeof(expected), nullptr, nullptr);
    const auto read = nlohmann::json::parse(record.Lines().at(0));
    EXPECT_EQ(read["fields"][0]["value"], expected);
}

TEST_F(EventRecord, StaysOpenWhenTheNextOneCannotBeOpened) {
    const TemporaryFile record;
    XeEvent_OpenRecord(record.Path());
    EXPECT_EQ(XeEvent_OpenRecord(L"no-such-folder\\events.ndjson"), ERROR_PATH_NOT_FOUND);
    XeEvent event(1);
    XeView::Report(event);
    EXPECT_EQ(record.Lines().size(), 1u);
}

TEST_F(EventRecord, HoldsEventsOfSeveralThreadsWholeAndInTheOrderOfTheSink) {
    constexpr int kThreads = 4;
    constexpr int kEventsEach = 50;
    const TemporaryFile record;
    XeEvent_OpenRecord(record.Path());
    std::vector<int> ids;
    XeEvent_SetSink([](void* context, int eventId, const XeEventField*,
                       size_t) { static_cast<std::vector<int>*>(context)->push_back(eventId); },
                    &ids);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < kEventsEach; ++i) {
                XeEvent event(thread * kEventsEach + i);
                event.PutString("text", std::string(300, 't'));
                XeView::Report(event);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    const std::vector<std::string> lines = record.Lines();
    ASSERT_EQ(lines.size(), static_cast<size_t>(kThreads * kEventsEach));
    ASSERT_EQ(ids.size(), lines.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(nlohmann::json::parse(lines[i])["id"], ids[i]);
    }
}

}  // namespace
