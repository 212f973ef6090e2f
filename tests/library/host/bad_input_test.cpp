// What goes wrong, told in one line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "host/host_error.h"
#include "host/win32_error.h"
#include "library/host/host_program.h"
#include "standins/common/text.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using standins::ToUtf8;
using test_support::ChildResult;
using test_support::TempFolder;

std::string FileError(DWORD error) { return host::Win32ErrorText(error) + "; name another file"; }

constexpr DWORD kBadInput = static_cast<DWORD>(host::ExitCode::BadInput);

/// A folder with some files; "{}" in arguments and messages stands for its path.
class HostBadInput : public testing::Test {
protected:
    HostBadInput() {
        WriteFile(folder.Path() + L"\\good.jsonl", R"({"at": "0s", "do": "stop"})");
        WriteFile(folder.Path() + L"\\bad.jsonl", "# fine\nstop\n");
        WriteFile(folder.Path() + L"\\plug.jsonl",
                  R"({"at": "0s", "do": "plug_device", "device": "USB\\1"})");
        WriteFile(
            folder.Path() + L"\\switch.jsonl",
            R"({"at": "0s", "do": "set_switch", "switch": "PowerfulModeStatus", "value": 1})");
        WriteFile(folder.Path() + L"\\empty.json", "{}");
        WriteFile(folder.Path() + L"\\deaf.json", R"({"devices": [{"id": "USB\\1"}]})");
        WriteFile(folder.Path() + L"\\kept.ndjson", "kept\n");
    }

    std::wstring Expand(std::wstring text) const {
        for (std::size_t at = text.find(L"{}"); at != std::wstring::npos; at = text.find(L"{}")) {
            text.replace(at, 2, folder.Path());
        }
        return text;
    }

    ChildResult Run(std::vector<std::wstring> arguments) const {
        for (std::wstring& argument : arguments) {
            argument = Expand(argument);
        }
        return RunHost(arguments);
    }

    std::string Line(const std::string& message) const {
        return "tallyport_host: " + ToUtf8(Expand(standins::ToWide(message))) + "\n";
    }

    TempFolder folder;
};

struct BadRun {
    std::vector<std::wstring> arguments;
    std::string message;
};

std::ostream& operator<<(std::ostream& stream, const BadRun& run) {
    for (const std::wstring& argument : run.arguments) {
        stream << ToUtf8(argument) << " ";
    }
    return stream;
}

class HostBadArguments : public HostBadInput, public testing::WithParamInterface<BadRun> {};

TEST_P(HostBadArguments, AreToldInOneLineBeforeAnythingIsDone) {
    const ChildResult result = Run(GetParam().arguments);
    EXPECT_EQ(result.exitCode, kBadInput);
    EXPECT_EQ(result.errors, Line(GetParam().message));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(ReadFile(folder.Path() + L"\\kept.ndjson"), "kept\n");
    EXPECT_FALSE(std::filesystem::exists(folder.Path() + L"\\new.ndjson"));
}

INSTANTIATE_TEST_SUITE_P(
    Options, HostBadArguments,
    testing::Values(
        BadRun{{L"--dayz", L"3"}, "there is no option '--dayz'; see tallyport_host --help"},
        BadRun{{L"run"}, "there is no option 'run'; see tallyport_host --help"},
        BadRun{{L"--days", L"three"},
               "--days: 'three' is not a whole number from 0 to 36500; see tallyport_host --help"},
        BadRun{{L"--hours", L"-1"},
               "--hours: '-1' is not a whole number from 0 to 876000; see tallyport_host --help"},
        BadRun{{L"--seconds", L"1.5"},
               "--seconds: '1.5' is not a whole number from 0 to 3153600000; see tallyport_host "
               "--help"},
        BadRun{{L"--days", L"36501"},
               "--days: '36501' is not a whole number from 0 to 36500; see tallyport_host "
               "--help"},
        BadRun{{L"--seconds", L"1", L"--seconds", L"2"},
               "--seconds: At Most 1 required but received 2; see tallyport_host --help"},
        BadRun{{L"--machine"}, "--machine: 1 required FILE missing; see tallyport_host --help"},
        BadRun{{L"--days"}, "--days: 1 required N missing; see tallyport_host --help"},
        BadRun{{L"--fresh", L"--keep-state"},
               "--keep-state excludes --fresh; see tallyport_host --help"}));

INSTANTIATE_TEST_SUITE_P(
    Listings, HostBadArguments,
    testing::Values(
        BadRun{{L"--list-devices", L"--days", L"1"},
               "--days is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--list-devices", L"--hours", L"1"},
               "--hours is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--seconds", L"5", L"--list-devices"},
               "--seconds is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--list-devices", L"--plugin", L"TallyportPlugin.dll"},
               "--plugin is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--list-devices", L"--script", L"{}\\good.jsonl"},
               "--script is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--events", L"{}\\kept.ndjson", L"--list-devices"},
               "--events is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--list-devices", L"--log", L"{}\\new.ndjson"},
               "--log is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--list-devices", L"--fresh"},
               "--fresh is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{{L"--list-devices", L"--keep-state"},
               "--keep-state is for a run, and --list-devices starts none; leave one of them out"},
        BadRun{
            {L"--list-devices", L"--machine", L"{}\\none.json"},
            "cannot read the machine file '{}\\none.json': " + FileError(ERROR_FILE_NOT_FOUND)}));

INSTANTIATE_TEST_SUITE_P(
    Scripts, HostBadArguments,
    testing::Values(
        BadRun{{L"--script", L"{}\\none.jsonl", L"--events", L"{}\\kept.ndjson"},
               "cannot read the script '{}\\none.jsonl': " + FileError(ERROR_FILE_NOT_FOUND)},
        BadRun{{L"--script", L"{}", L"--events", L"{}\\kept.ndjson"},
               "cannot read the script '{}': " + FileError(ERROR_ACCESS_DENIED)},
        BadRun{{L"--script", L"{}\\bad.jsonl", L"--events", L"{}\\kept.ndjson", L"--log",
                L"{}\\new.ndjson"},
               "{}\\bad.jsonl:2: not valid JSON at column 1; write one object per line, such as "
               "{\"at\": \"3d 04:00\", \"do\": \"stop\"}"},
        BadRun{{L"--script", L"{}\\plug.jsonl", L"--events", L"{}\\kept.ndjson"},
               "{}\\plug.jsonl:1: devices are plugged on simulated machines only; name one with "
               "--machine FILE"},
        BadRun{{L"--script", L"{}\\plug.jsonl", L"--machine", L"{}\\empty.json"},
               "{}\\plug.jsonl:1: '{}\\empty.json' describes no device \"USB\\1\"; describe it "
               "there, with \"present\": false if it comes later"},
        BadRun{{L"--script", L"{}\\plug.jsonl", L"--machine", L"{}\\deaf.json"},
               "{}\\plug.jsonl:1: \"USB\\1\" has no device interface, so nobody would hear of it; "
               "describe one in '{}\\deaf.json'"},
        BadRun{{L"--script", L"{}\\switch.jsonl", L"--machine", L"{}\\empty.json"},
               "{}\\switch.jsonl:1: nobody is logged on at the console of '{}\\empty.json', so "
               "there are no switches; describe a console session there"}));

INSTANTIATE_TEST_SUITE_P(
    Files, HostBadArguments,
    testing::Values(
        BadRun{{L"--machine", L"{}\\none.json"},
               "cannot read the machine file '{}\\none.json': " + FileError(ERROR_FILE_NOT_FOUND)},
        BadRun{{L"--events", L"{}\\none\\a.ndjson", L"--log", L"{}\\kept.ndjson"},
               "cannot write the file of --events, '{}\\none\\a.ndjson': " +
                   FileError(ERROR_PATH_NOT_FOUND)},
        BadRun{{L"--events", L"{}\\kept.ndjson", L"--log", L"{}"},
               "cannot write the file of --log, '{}': " + FileError(ERROR_ACCESS_DENIED)},
        BadRun{{L"--events", L"{}\\new.ndjson", L"--log", L"{}"},
               "cannot write the file of --log, '{}': " + FileError(ERROR_ACCESS_DENIED)},
        BadRun{{L"--events", L"{}\\kept.ndjson", L"--log", L"{}\\.\\KEPT.ndjson"},
               "--events and --log name the same file, '{}\\kept.ndjson'; name two"},
        BadRun{{L"--script", L"{}\\good.jsonl", L"--events", L"{}\\good.jsonl"},
               "--script and --events name the same file, '{}\\good.jsonl'; name two"},
        BadRun{{L"--plugin", L"{}\\none.dll", L"--events", L"{}\\kept.ndjson"},
               "there is no plug-in '{}\\none.dll'; name the DLL's file with --plugin"}));

TEST_F(HostBadInput, TellsThatAValueIsMissing) {
    const ChildResult result = Run({L"--events"});
    EXPECT_EQ(result.exitCode, kBadInput);
    EXPECT_THAT(result.errors,
                testing::MatchesRegex("tallyport_host: --events.* see tallyport_host --help\n"));
}

TEST_F(HostBadInput, TellsADefectOfAMachineFileInOneLine) {
    const ChildResult result = Run({L"--machine", L"{}\\bad.jsonl"});
    EXPECT_EQ(result.exitCode, kBadInput);
    EXPECT_EQ(LinesOf(result.errors).size(), 1U);
    EXPECT_THAT(
        result.errors,
        testing::StartsWith(Line("{}\\bad.jsonl").substr(0, Line("{}\\bad.jsonl").size() - 1)));
    EXPECT_EQ(result.output, "");
}

TEST_F(HostBadInput, TellsWhichKeysAMachineFileMayHave) {
    const std::vector<std::pair<std::string, std::string>> defects{
        {R"({"clocks": {"x": 1}})",
         R"(/clocks: unknown key "x"; known here are "unixSeconds", "steadyNanoseconds")"},
        {R"({"devices": [{"id": "USB\\1", "properties": {"{4D1E55B2}": {"uint32": 1}}}]})",
         "/devices/0/properties/{4D1E55B2}: expected a property key such as "
         R"("{A45C254E-DF1C-4EFD-8020-67D146A850E0} 14")"}};
    for (const auto& [content, message] : defects) {
        WriteFile(folder.Path() + L"\\defect.json", content);
        const ChildResult result = Run({L"--machine", L"{}\\defect.json"});
        EXPECT_EQ(result.exitCode, kBadInput);
        EXPECT_EQ(result.errors, Line("{}\\defect.json: " + message));
        EXPECT_EQ(result.output, "");
    }
}

}  // namespace
}  // namespace host_test
