// --list-devices on the machine files, compared with what they must give, and on this computer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "common/text.h"
#include "host/run/surroundings.h"
#include "library/device_sources/plain_walk.h"
#include "support/host_program.h"
#include "support/real_devices.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using test_support::ChildResult;
using test_support::LinesOf;
using test_support::ReadFile;
using test_support::RunHost;
using test_support::ShownLines;
using test_support::WriteFile;
using testing::ElementsAre;
using testing::HasSubstr;

using Lines = std::vector<std::string>;

/// The lines that differ, between the first and the last difference: expected ones with "-" in
/// front, others with "+". At most twenty of each.
std::string Difference(const Lines& expected, const Lines& actual) {
    constexpr std::ptrdiff_t kMost = 20;
    const auto [expectedFirst, actualFirst] =
        std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    const auto [expectedLast, actualLast] =
        std::mismatch(expected.rbegin(), std::make_reverse_iterator(expectedFirst), actual.rbegin(),
                      std::make_reverse_iterator(actualFirst));
    std::string text = "from line " + std::to_string(expectedFirst - expected.begin() + 1) + ":\n";
    const auto show = [&](const char* sign, auto first, auto last) {
        const auto end = first + std::min(kMost, last - first);
        std::for_each(first, end, [&](const std::string& line) { text += sign + line + "\n"; });
        if (end != last) {
            text += sign + std::string("... and ") + std::to_string(last - end) + " more lines\n";
        }
    };
    show("- ", expectedFirst, expectedLast.base());
    show("+ ", actualFirst, actualLast.base());
    return text;
}

/// The text with numbers left out, in which devices differ that a machine file repeats.
std::string WithoutNumbers(const std::string& line) {
    std::string text;
    std::copy_if(line.begin(), line.end(), std::back_inserter(text), [](char one) {
        return one != ' ' && (one < '0' || one > '9') && (one < 'A' || one > 'F');
    });
    return text;
}

/// The text without the lines that differ from two others above in numbers only. In their place it
/// says how many there are.
std::string Shortened(const std::string& text) {
    std::map<std::string, int> seen;
    std::string result;
    int leftOut = 0;
    for (const std::string& line : LinesOf(text)) {
        const std::string kind = WithoutNumbers(line);
        if (!kind.empty() && ++seen[kind] > 2) {
            ++leftOut;
            continue;
        }
        if (leftOut != 0) {
            result += "... and " + std::to_string(leftOut) + " more like those above\n";
            leftOut = 0;
        }
        result += line + "\n";
    }
    return result;
}

/// The names of all machine files.
std::vector<std::string> Machines() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MACHINE_FOLDER)) {
        if (entry.path().filename() != "machine.schema.json") {
            names.push_back(entry.path().stem().string());
        }
    }
    return names;
}

class ListedMachine : public testing::TestWithParam<std::string> {};

TEST_P(ListedMachine, HasTheExpectedInventory) {
    const std::string& name = GetParam();
    const std::string machine = MACHINE_FOLDER "/" + name + ".json";
    const ChildResult result =
        RunHost({L"--list-devices", L"--machine", std::wstring(machine.begin(), machine.end())});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(result.errors, "");
    // The path is another on every computer.
    std::string output = result.output;
    ASSERT_THAT(output, HasSubstr(machine));
    output.replace(output.find(machine), machine.size(), name + ".json");
    output = Shortened(output);

    const std::string expectedFile = EXPECTED_FOLDER "/" + name + ".txt";
    const std::string expected =
        std::filesystem::exists(expectedFile)
            ? ReadFile(std::wstring(expectedFile.begin(), expectedFile.end()))
            : "";
    if (output != expected) {
        const std::string actualFile = ACTUAL_FOLDER "/" + name + ".txt";
        WriteFile(std::wstring(actualFile.begin(), actualFile.end()), output);
        const std::string files = "'" + actualFile + "' '" + expectedFile + "'";
        ADD_FAILURE() << "--list-devices differs from the expected text "
                      << Difference(LinesOf(expected), LinesOf(output)) << "All of it:\n  diff "
                      << files << "\nIf the new text is right, renew the expected one:\n  cp "
                      << files;
    }
}

INSTANTIATE_TEST_SUITE_P(MachineFiles, ListedMachine, testing::ValuesIn(Machines()));

/// Runs on a machine that the test describes.
class ListDevices : public testing::Test {
protected:
    ChildResult List(const std::string& machine, const std::vector<std::wstring>& more = {}) const {
        const std::wstring file = folder.Path() + L"\\machine.json";
        WriteFile(file, machine);
        std::vector<std::wstring> arguments{L"--list-devices", L"--machine", file};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunHost(arguments);
    }

    test_support::TempFolder folder;
};

TEST_F(ListDevices, ShowsLogLinesAsARunDoesUnlessQuiet) {
    const ChildResult result = List("{}");
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_THAT(ShownLines(result.output, "log"),
                ElementsAre("printerInfoList is null(DeviceReporter::ParsePrinters)",
                            "QueryDisplayConfig failed!(`anonymous-namespace'::GetDisplayInfo)"));
    EXPECT_THAT(ShownLines(List("{}", {L"--quiet"}).output, "log"), ElementsAre());
}

TEST_F(ListDevices, TellsOfAnExceptionThatWouldEndTheSuite) {
    const ChildResult result = List(R"({"display": {"paths": [{"edid": "00 FF",
        "devicePath": "\\\\?\\DISPLAY#ZQM2401#4&2c8b1a0f&0&UID1#{0}"}]}})");
    EXPECT_EQ(result.exitCode, 1U);
    EXPECT_THAT(
        result.errors,
        testing::MatchesRegex(
            "tallyport_host: the plug-in's code ended with an exception, which would end "
            "the suite's process: .+; a monitor's EDID of less than ten bytes does that\n"));
}

TEST_F(ListDevices, JoinsTheLinesOfANameAndHidesControlCharacters) {
    const ChildResult result = List(R"({"devices": [{
        "id": "usb\\vid_0001&pid_0002\\a", "removable": true,
        "properties": {"FriendlyName": "Dock", "Name": "Hub \u001b[31m", "Class": "USB",
                       "ContainerId": "{0B7D44C1-91B4-11EF-B0F3-430000000001}"}}]})");
    EXPECT_THAT(
        LinesOf(result.output),
        testing::Contains("    USB    Dock / Hub \\x1b[31m  -     -      VID_0001&PID_0002  yes"
                          "        {0B7D44C1-91B4-11EF-B0F3-430000000001}  "
                          "USB\\VID_0001&PID_0002\\A"));
}

TEST_F(ListDevices, NamesEveryObstacleOfAnUnreportedDevice) {
    const ChildResult result = List(R"({"devices": [
        {"id": "A\\VID_0001&PID_0002\\1", "properties": {"Class": "USB"}},
        {"id": "B\\VID_0001&PID_0002\\1", "removable": true, "properties":
            {"ContainerId": "{0B7D44C1-91B4-11EF-B0F3-430000000001}"}},
        {"id": "C\\1", "properties":
            {"Class": "USB", "ContainerId": "{0B7D44C1-91B4-11EF-B0F3-430000000001}"}},
        {"id": "D\\1", "properties": {"Class": "MySystem"}}]})");
    std::vector<std::string> obstacles;
    for (const std::string& line : LinesOf(result.output)) {
        for (const char* id : {"  A\\", "  B\\", "  C\\", "  D\\"}) {
            if (line.find(id) != std::string::npos) {
                obstacles.push_back(line.substr(4, line.find("  ", 4) - 4));
            }
        }
    }
    EXPECT_THAT(obstacles,
                ElementsAre("container", "class", "vendor id", "container, class, vendor id"));
}

TEST(ListDevicesHere, ShowsEachDeviceThatAPlainWalkFindsAndLeavesTheRegistryAlone) {
    if (GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
        GTEST_SKIP() << "in Wine no device is removable, so that all are in one table";
    }
    test_support::WaitForRealDevices();
    const std::int64_t written = 1'700'000'000;
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, host::kKeptStateKey, host::kBiosReportTime,
                              REG_QWORD, &written, sizeof(written)),
              ERROR_SUCCESS);
    const ChildResult result = RunHost({L"--list-devices"});
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    std::vector<std::string> expected;
    for (const std::wstring& id : plain_walk::InstanceIds()) {
        expected.push_back(workbench::ToUtf8(id));
    }
    Lines listed;
    const Lines lines = LinesOf(result.output);
    // Below the title, the explanation and the headings.
    const std::string title = "Not reported: " + std::to_string(expected.size()) + " devices";
    const auto begin = std::find(lines.begin(), lines.end(), title);
    for (auto line = begin; line != lines.end() && !line->empty(); ++line) {
        listed.push_back(line->substr(line->rfind("  ") + 2));
    }
    ASSERT_GT(listed.size(), 3U);
    listed.erase(listed.begin(), listed.begin() + 3);
    EXPECT_EQ(listed, expected);

    std::int64_t read = 0;
    DWORD size = sizeof(read);
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, host::kKeptStateKey, host::kBiosReportTime,
                           RRF_RT_REG_QWORD, nullptr, &read, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(read, written);
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, host::kKeptStateKey, host::kBiosReportTime);
}

}  // namespace
}  // namespace host_test
