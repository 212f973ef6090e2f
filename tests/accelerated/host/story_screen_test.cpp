// The story that ./dev run plays, on the screen, against the files that it names. What the plug-in
// sends in a story, and when, the model in accelerated/story knows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>

#include "common/text.h"
#include "common/text_table.h"
#include "host/page/page.h"
#include "records/record_reader.h"
#include "support/host_program.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using test_support::ChildResult;
using test_support::LinesOf;
using test_support::RunHost;
using test_support::ShownLines;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Of the fast clock: five real minutes.
constexpr std::chrono::hours kLimit{3000};

/// Events that the screen counts as one thing, be it a kind of event or a device list.
using Events = std::vector<records::SentEvent>;

std::size_t BytesOf(const Events& events) {
    std::size_t bytes = 0;
    for (const records::SentEvent& event : events) {
        bytes += records::EventBytes(event);
    }
    return bytes;
}

/// The devices under a key, in order.
std::vector<records::ListedDevice> DevicesOf(const Events& list, const std::string& key) {
    std::vector<records::ListedDevice> devices;
    for (const records::SentEvent& event : list) {
        for (const records::SentField& field : event.fields) {
            if (field.key == key) {
                const auto chunk = records::ParseDeviceChunk(field.value).value();
                devices.insert(devices.end(), chunk.begin(), chunk.end());
            }
        }
    }
    return devices;
}

std::vector<std::string> WordsOf(const std::string& line) {
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
}

/// Plays once for all tests: that takes half a minute.
class HostStory : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const test_support::TempFolder folder;
        const std::wstring eventFile = folder.Path() + L"\\events.ndjson";
        const std::wstring logFile = folder.Path() + L"\\log.txt";
        // The paths among the options are those of ./dev run.
        std::filesystem::current_path(PROJECT_FOLDER);
        std::vector<std::wstring> arguments{L"--events", eventFile, L"--log", logFile};
        for (const std::string& option :
             LinesOf(test_support::ReadFile(L"workbench/stories/office_laptop.options"))) {
            arguments.push_back(workbench::ToWide(option));
        }
        result = RunHost(arguments, {}, kLimit);
        lines = LinesOf(result.output);
        log = records::ParseLog(test_support::ReadFile(logFile), "log");
        const auto record = records::ParseEventRecord(test_support::ReadFile(eventFile), "events");
        const auto listNumbers = host::NumberDeviceLists(record);
        for (std::size_t i = 0; i < record.size(); ++i) {
            kinds[record[i].event.id].push_back(record[i].event);
            if (listNumbers[i]) {
                lists[*listNumbers[i]].push_back(record[i].event);
            }
        }
    }

    /// The lines behind the first one that begins with `start`, up to an empty one.
    static std::vector<std::string> Below(const std::string& start) {
        const auto line = std::find_if(lines.begin(), lines.end(), [&](const std::string& one) {
            return one.compare(0, start.size(), start) == 0;
        });
        if (line == lines.end()) {
            ADD_FAILURE() << "there is no line '" << start << "'";
            return {};
        }
        return {line + 1, std::find(line, lines.end(), "")};
    }

    inline static ChildResult result;
    inline static std::vector<std::string> lines;
    inline static std::vector<records::RecordedLine> log;
    inline static std::map<int, Events> kinds;
    inline static std::map<int, Events> lists;
};

TEST_F(HostStory, EndsInOrderAndNotesWhatThePluginDoesWithoutAWord) {
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(result.errors, "");
    const std::vector<std::string> steps = ShownLines(result.output, "step");
    EXPECT_EQ(steps.back(), "Unload TallyportPlugin.dll");
    EXPECT_EQ(std::count(steps.begin(), steps.end(), "Started"), 2);
    EXPECT_EQ(std::count(steps.begin(), steps.end(), "Stopped"), 2);
    EXPECT_THAT(ShownLines(result.output, "note"),
                ElementsAre("2 of 10 device lists were sent before this run",
                            "The device monitor ended: 10 of 10 device lists sent",
                            "It started no device monitor: 10 of 10 device lists sent"));
}

TEST_F(HostStory, EndsWithATableOfWhatIsInTheRecord) {
    EXPECT_EQ(kinds.size(), 4U);
    std::vector<std::string> rows = Below("event      name");
    ASSERT_EQ(rows.size(), kinds.size() + 2) << "and the two lines about the files";
    auto row = rows.begin();
    for (const auto& [id, events] : kinds) {
        const std::string name = std::to_string(id) + "  " + records::EventName(id) + " ";
        ASSERT_THAT(*row, StartsWith(name));
        const std::vector<std::string> words = WordsOf(row->substr(name.size()));
        ASSERT_EQ(words.size(), 6U);
        EXPECT_EQ(words[0], std::to_string(events.size()));
        EXPECT_EQ(words[1], std::to_string(BytesOf(events)));
        ++row;
    }
}

TEST_F(HostStory, HasARowForEachDeviceList) {
    const std::vector<std::string> rows = Below("Device lists, put together");
    // The machine has sent two before, and ten are the most.
    ASSERT_EQ(lists.size(), 8U);
    ASSERT_EQ(rows.size(), lists.size() + 1);
    const std::vector<std::string> heading = WordsOf(rows[0]);
    ASSERT_EQ(heading.size(), 10U);
    for (const auto& [number, events] : lists) {
        const std::vector<std::string> words = WordsOf(rows[static_cast<std::size_t>(number) + 1]);
        ASSERT_EQ(words.size(), 10U);
        EXPECT_EQ(words[0], std::to_string(3 + number));
        EXPECT_EQ(words[3], std::to_string(events.size()));
        EXPECT_EQ(words[4], std::to_string(BytesOf(events)));
        for (std::size_t column = 5; column < 10; ++column) {
            EXPECT_EQ(words[column], std::to_string(DevicesOf(events, heading[column]).size()))
                << heading[column];
        }
    }
}

TEST_F(HostStory, TellsThePluggedDeviceFromTheListsBefore) {
    const std::vector<std::string> changes = Below("What changed from list to list:");
    ASSERT_EQ(changes.size(), 1U);
    // It came before the third or, on a busy computer, the second list.
    EXPECT_THAT(changes[0],
                testing::AllOf(StartsWith("  new in list "),
                               HasSubstr("  DeviceList  USB  USB Mass Storage Device  "),
                               testing::EndsWith("  VID_0781&PID_5581")));
}

TEST_F(HostStory, ShowsEveryDeviceOfTheLastList) {
    ASSERT_FALSE(lists.empty());
    std::vector<std::string> expected;
    for (const char* key :
         {"HIDList", "BluetoothList", "DeviceList", "PrinterList", "DisplayList"}) {
        const auto devices = DevicesOf(lists.rbegin()->second, key);
        expected.push_back("  " + std::string(key) + ": " +
                           workbench::Plural(devices.size(), "device"));
        workbench::TextTable table{{{"class", "name", "desc", "maker", "device"}}, {}};
        table.rows.insert(table.rows.end(), devices.begin(), devices.end());
        for (const std::string& row : workbench::FormatTable(table)) {
            expected.push_back("    " + workbench::Printable(row));
        }
    }
    EXPECT_EQ(Below("Device list 10 in full:"), expected);
}

TEST_F(HostStory, LeavesTheTimersLinesToTheLogAndSaysHowManyLinesThatHas) {
    const std::string timerLine = "BigdataTimerReportFrame loop(";
    EXPECT_THAT(ShownLines(result.output, "log"),
                testing::Not(testing::Contains(StartsWith(timerLine))));
    EXPECT_GE(std::count_if(log.begin(), log.end(),
                            [&](const records::RecordedLine& line) {
                                return line.text.compare(0, timerLine.size(), timerLine) == 0;
                            }),
              100);
    const std::size_t shown =
        ShownLines(result.output, "log").size() + ShownLines(result.output, "log!").size();
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(lines.back(), testing::EndsWith(", with " + std::to_string(log.size() - shown) +
                                                " that are not shown above"));
    EXPECT_LT(lines.size(), 250U);
}

/// The host waits for a plug-in's thread by counting looks, which are short on the fast clock.
TEST(StayingPlugin, EndsInOneLineOnAnySystem) {
    const test_support::TempFolder folder;
    test_support::WriteFile(folder.Path() + L"\\machine.json", "{}");
    std::vector<std::wstring> arguments{
        L"--seconds", L"0", L"--plugin",
        test_support::ProgramFolder() + L"\\host_test_plugins\\staying_plugin.dll"};
    constexpr std::chrono::hours kYear{24 * 365};
    ChildResult result = RunHost(arguments, {}, kYear);
    EXPECT_EQ(result.exitCode, 1U);
    EXPECT_EQ(result.errors,
              "tallyport_host: the plug-in stays loaded after Stop: a thread of it is still "
              "running, or somebody kept a reference to it; Stop has to see to both\n");
    arguments.insert(arguments.end(), {L"--machine", folder.Path() + L"\\machine.json"});
    result = RunHost(arguments, {}, kYear);
    EXPECT_EQ(result.exitCode, 1U);
    EXPECT_EQ(result.errors,
              "tallyport_host: a thread of the plug-in is still running after Stop, which has to "
              "see to its end\n");
}

/// Numbers and widths differ from run to run.
std::string Normalised(const std::string& line) {
    const std::string numbers = std::regex_replace(line, std::regex("[0-9]+"), "N");
    return std::regex_replace(numbers, std::regex(" +"), " ");
}

TEST_F(HostStory, HasTheLinesThatTheReadmeShows) {
    std::vector<std::string> played;
    std::transform(lines.begin(), lines.end(), std::back_inserter(played), &Normalised);
    const std::vector<std::string> readme = LinesOf(test_support::ReadFile(L"README.md"));
    auto line = std::find_if(readme.begin(), readme.end(), [](const std::string& one) {
        return one.find("Shortened") != std::string::npos;
    });
    line = std::find(line, readme.end(), "```");
    const auto end = std::find(line == readme.end() ? line : line + 1, readme.end(), "```");
    ASSERT_GT(end - line, 10);
    for (++line; line != end; ++line) {
        const bool isCut = line->empty() || *line == "  ...";
        // The files are others here.
        if (!isCut && line->find("build/story") == std::string::npos) {
            EXPECT_THAT(played, testing::Contains(StartsWith(Normalised(*line))));
        }
    }
}

}  // namespace
}  // namespace host_test
