// What the story's screen says, against the files that it names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>

#include "accelerated/host/played_story.h"
#include "host/machine_time.h"
#include "host/sent_event.h"
#include "host/text_table.h"
#include "library/host/host_program.h"
#include "standins/common/text.h"

namespace host_test {
namespace {

using nlohmann::json;
using std::chrono::seconds;
using testing::HasSubstr;

std::vector<std::string> WordsOf(const std::string& line) {
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
}

class HostStoryScreen : public testing::Test {
protected:
    /// The lines behind the first one that begins with `start`, up to an empty one.
    std::vector<std::string> Below(const std::string& start) const {
        auto line = std::find_if(lines.begin(), lines.end(), [&](const std::string& one) {
            return one.compare(0, start.size(), start) == 0;
        });
        if (line == lines.end()) {
            ADD_FAILURE() << "there is no line '" << start << "'";
            return {};
        }
        return {line + 1, std::find(line, lines.end(), "")};
    }

    const PlayedStory& story = PlayedStory::Instance();
    const std::vector<std::string> lines = LinesOf(story.Result().output);
};

TEST_F(HostStoryScreen, NamesTheFilesAtBothEnds) {
    const std::string events = standins::ToUtf8(story.EventFile());
    const std::string log = standins::ToUtf8(story.LogFile());
    EXPECT_THAT(story.Result().output, HasSubstr("events   " + events));
    EXPECT_THAT(story.Result().output, HasSubstr("log      " + log));
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "Every event is in " + events);
    EXPECT_THAT(lines.back(), testing::StartsWith("Every log line is in " + log));
}

TEST_F(HostStoryScreen, EndsWithATableOfWhatIsInTheRecord) {
    struct Row {
        std::size_t count = 0;
        std::size_t bytes = 0;
        seconds first{};
        seconds last{};
    };
    std::map<int, Row> rows;
    for (const PlayedEvent& event : story.Events()) {
        Row& row = rows[event.id];
        row.first = row.count++ == 0 ? event.time : row.first;
        row.last = event.time;
        row.bytes += event.bytes;
    }
    std::vector<std::string> shown = Below("event      name");
    ASSERT_EQ(shown.size(), rows.size() + 2) << "and the two lines about the files";
    auto line = shown.begin();
    for (const auto& [id, row] : rows) {
        const std::string name = std::to_string(id) + "  " + host::EventName(id) + " ";
        ASSERT_EQ(line->substr(0, name.size()), name);
        const std::vector<std::string> words = WordsOf(line->substr(name.size()));
        ASSERT_EQ(words.size(), 6U);
        EXPECT_EQ(words[0], std::to_string(row.count));
        EXPECT_EQ(words[1], std::to_string(row.bytes));
        const auto first = host::ParseMachineTime(words[2] + " " + words[3]);
        const auto last = host::ParseMachineTime(words[4] + " " + words[5]);
        ASSERT_TRUE(first && last);
        EXPECT_LE(std::chrono::abs(*first - row.first), kLateness);
        EXPECT_LE(std::chrono::abs(*last - row.last), kLateness);
        ++line;
    }
}

TEST_F(HostStoryScreen, HasARowForEachDeviceList) {
    const std::vector<std::string> rows = Below("Device lists, put together");
    const std::vector<PlayedList> lists = story.DeviceLists();
    ASSERT_EQ(rows.size(), lists.size() + 1);
    const std::vector<std::string> heading = WordsOf(rows[0]);
    ASSERT_EQ(heading.size(), 10U);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const std::vector<std::string> words = WordsOf(rows[i + 1]);
        ASSERT_EQ(words.size(), 10U);
        EXPECT_EQ(words[0], std::to_string(3 + i));
        std::size_t bytes = 0;
        for (const PlayedEvent& event : lists[i]) {
            bytes += event.bytes;
        }
        EXPECT_EQ(words[3], std::to_string(lists[i].size()));
        EXPECT_EQ(words[4], std::to_string(bytes));
        for (std::size_t column = 5; column < 10; ++column) {
            EXPECT_EQ(words[column], std::to_string(DevicesOf(lists[i], heading[column]).size()))
                << heading[column];
        }
    }
}

TEST_F(HostStoryScreen, TellsThePluggedDeviceFromTheListsBefore) {
    const std::vector<std::string> changes = Below("What changed from list to list:");
    ASSERT_EQ(changes.size(), 1U);
    // It came before the third or, on a busy computer, the second list.
    EXPECT_THAT(changes[0],
                testing::AllOf(testing::StartsWith("  new in list "),
                               HasSubstr("  DeviceList  USB  USB Mass Storage Device  "),
                               testing::EndsWith("  VID_0781&PID_5581")));
}

TEST_F(HostStoryScreen, ShowsEveryDeviceOfTheLastList) {
    std::vector<std::string> expected;
    const PlayedList last = story.DeviceLists().back();
    for (const char* key :
         {"HIDList", "BluetoothList", "DeviceList", "PrinterList", "DisplayList"}) {
        const std::vector<json> devices = DevicesOf(last, key);
        expected.push_back("  " + std::string(key) + ": " + host::Plural(devices.size(), "device"));
        host::TextTable table{{{"class", "name", "desc", "maker", "device"}}, {}};
        for (const json& device : devices) {
            std::vector<std::string> row;
            for (const std::string& member : table.rows[0]) {
                row.push_back(device.value(member, ""));
            }
            table.rows.push_back(row);
        }
        for (const std::string& row : host::FormatTable(table)) {
            expected.push_back("    " + host::Printable(row));
        }
    }
    EXPECT_EQ(Below("Device list 10 in full:"), expected);
}

TEST_F(HostStoryScreen, LeavesTheTimersLinesToTheLogAndSaysHowManyLinesThatHas) {
    const std::vector<std::string> normal = ShownLines(story.Result().output, "log");
    EXPECT_EQ(CountLines(normal, "BigdataTimerReportFrame loop("), 0U);
    EXPECT_GE(CountLines(story.LogOfFirstStart(), "BigdataTimerReportFrame loop("), 100U);
    const std::size_t all = story.LogOfFirstStart().size() + story.LogOfSecondStart().size();
    const std::size_t shown = normal.size() + ShownLines(story.Result().output, "log!").size();
    EXPECT_THAT(lines.back(), testing::EndsWith(", with " + std::to_string(all - shown) +
                                                " that are not shown above"));
    EXPECT_LT(lines.size(), 250U);
}

}  // namespace
}  // namespace host_test
