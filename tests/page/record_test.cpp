// What an earlier run wrote, read back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/host_error.h"
#include "host/page/record_reader.h"
#include "host/page/recorded_time.h"

namespace host {
namespace {

constexpr char kGood[] =
    R"({"time":"2026-11-20T18:54:03.120Z","id":992614500,"fields":[{"key":"Product","value":"ü"}]})";

TEST(RecordedTime, IsReadAsUtc) {
    EXPECT_EQ(ParseUtcTime("1970-01-01T00:00:00.000Z"), 0);
    EXPECT_EQ(ParseUtcTime("2026-11-20T18:54:03.120Z"), 1795200843120);
}

TEST(RecordedTime, IsRefusedInAnotherForm) {
    for (const char* const text :
         {"", "2026-11-20 18:54:03.120Z", "2026-11-20T18:54:03.12Z", "2026-13-20T18:54:03.120Z",
          "2026-11-20T18:54:03.120Z ", "2026-11-20T1a:54:03.120Z"}) {
        EXPECT_EQ(ParseUtcTime(text), std::nullopt) << text;
    }
}

TEST(RecordedTime, OfALogIsLocal) {
    const auto winter = ParseLocalTime("2026-01-20 18:54:03.120");
    const auto utc = ParseUtcTime("2026-01-20T18:54:03.120Z");
    ASSERT_TRUE(winter && utc);
    // Zones differ from UTC by whole quarters of an hour, by fourteen hours at most.
    EXPECT_EQ((*winter - *utc) % 900000, 0);
    EXPECT_LE(std::abs(*winter - *utc), 14 * 3600000LL);
}

TEST(EventRecord, IsReadInItsOrderWithoutEmptyLines) {
    const auto events =
        ParseEventRecord(std::string(kGood) + "\n\r\n" +
                             R"({"time":"2026-11-20T18:54:04.000Z","id":-5,"fields":[]})",
                         "r.ndjson");
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].time, 1795200843120);
    EXPECT_EQ(events[0].event.id, 992614500);
    ASSERT_EQ(events[0].event.fields.size(), 1U);
    EXPECT_EQ(events[0].event.fields[0].key, "Product");
    EXPECT_EQ(events[0].event.fields[0].value, "ü");
    EXPECT_EQ(events[1].event.id, -5);
    EXPECT_TRUE(events[1].event.fields.empty());
}

TEST(EventRecord, MayBeEmpty) { EXPECT_TRUE(ParseEventRecord("", "r.ndjson").empty()); }

struct BadLine {
    std::string line;
    std::string message;
};

std::ostream& operator<<(std::ostream& stream, const BadLine& bad) { return stream << bad.line; }

constexpr char kMend[] = "; mend or remove the line, or record the run again with --events";

template <typename Read>
std::string MessageOf(Read read) {
    try {
        read();
    } catch (const HostError& error) {
        EXPECT_EQ(error.Code(), ExitCode::BadInput);
        return error.what();
    }
    return "none";
}

class BadEventLine : public testing::TestWithParam<BadLine> {};

TEST_P(BadEventLine, IsToldWithFileAndLine) {
    EXPECT_EQ(MessageOf([] {
                  ParseEventRecord(std::string(kGood) + "\n\n" + GetParam().line + "\n",
                                   "r.ndjson");
              }),
              "r.ndjson:3: " + GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Record, BadEventLine,
    testing::Values(
        BadLine{R"({"time":"2026-)", std::string("not valid JSON at column 15") + kMend},
        BadLine{"{\"time\":\"\xFF\"}", std::string("not valid JSON at column 10") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":1e999,"fields":[]})",
                std::string("a number is too large") + kMend},
        BadLine{"[]", std::string("not an event") + kMend},
        BadLine{R"({"id":1,"fields":[]})",
                std::string("\"time\" is missing or not a text") + kMend},
        BadLine{R"({"time":"yesterday","id":1,"fields":[]})",
                R"("time" is "yesterday"; it has the form "2026-11-20T18:54:03.120Z")"},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","fields":[]})",
                std::string("\"id\" is missing or not a number of an event") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":1.5,"fields":[]})",
                std::string("\"id\" is missing or not a number of an event") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":4294967296,"fields":[]})",
                std::string("\"id\" is missing or not a number of an event") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":-2147483649,"fields":[]})",
                std::string("\"id\" is missing or not a number of an event") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":1,"fields":{}})",
                std::string("\"fields\" is missing or not an array") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":1,"fields":["a"]})",
                std::string("a field is not an object with \"key\" and \"value\"") + kMend},
        BadLine{R"({"time":"2026-11-20T18:54:03.120Z","id":1,"fields":[{"key":"a"}]})",
                std::string("\"value\" is missing or not a text") + kMend}));

TEST(Log, IsReadWithTimeLevelAndText) {
    const auto lines = ParseLog("2026-11-20 19:54:03.120 [4] a [3] b(F)\r\n", "log.txt");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].time, ParseLocalTime("2026-11-20 19:54:03.120"));
    EXPECT_EQ(lines[0].level, 4);
    EXPECT_EQ(lines[0].text, "a [3] b(F)");
}

TEST(Log, IsRefusedWithFileAndLineWhenALineIsNone) {
    for (const char* const line :
         {"hello", "2026-11-20 19:54:03.120", "2026-11-20 19:54:03.120 [x] a",
          "2026-11-20T19:54:03.120Z[3] a", "2026-11-20 19:54:03.120 [3]"}) {
        EXPECT_EQ(MessageOf([&] {
                      ParseLog(std::string("2026-11-20 19:54:03.120 [3] a\n") + line, "log.txt");
                  }),
                  "log.txt:2: not a log line; it begins like \"2026-11-20 19:54:03.120 [3] \", as "
                  "--log writes it")
            << line;
    }
}

}  // namespace
}  // namespace host
