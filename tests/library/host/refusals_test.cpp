// Every refusal is one line and an exit code that says whether anything was started.
#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "common/text.h"
#include "host/host_error.h"
#include "support/host_program.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using host::ExitCode;
using host::Win32ErrorText;
using test_support::ChildResult;
using test_support::RunHost;
using test_support::WriteFile;
using workbench::ToUtf8;
using workbench::ToWide;

/// In arguments and messages "{}" stands for a folder, and "{plugins}" for that of the plug-ins.
struct Refusal {
    std::vector<std::wstring> arguments;
    std::string message;
    std::string content{};  ///< Of the file "{}\given".
};

std::ostream& operator<<(std::ostream& stream, const Refusal& refusal) {
    for (const std::wstring& argument : refusal.arguments) {
        stream << ToUtf8(argument) << " ";
    }
    return stream << refusal.content;
}

class HostRefusal : public testing::TestWithParam<Refusal> {
protected:
    HostRefusal() { WriteFile(folder.Path() + L"\\kept", "kept\n"); }

    std::wstring Expand(std::wstring text) const {
        const auto replace = [&](const std::wstring& mark, const std::wstring& path) {
            for (std::size_t at = 0; (at = text.find(mark)) != std::wstring::npos;) {
                text.replace(at, mark.size(), path);
            }
        };
        replace(L"{plugins}", test_support::ProgramFolder() + L"\\host_test_plugins");
        replace(L"{}", folder.Path());
        return text;
    }

    /// The arguments and the message are those of the parameter.
    ChildResult ExpectRefused(ExitCode code) const {
        std::vector<std::wstring> arguments = GetParam().arguments;
        for (std::wstring& argument : arguments) {
            argument = Expand(argument);
        }
        const ChildResult result = RunHost(arguments);
        EXPECT_EQ(result.exitCode, static_cast<DWORD>(code));
        EXPECT_EQ(result.errors,
                  "tallyport_host: " + ToUtf8(Expand(ToWide(GetParam().message))) + "\n");
        return result;
    }

    std::vector<std::wstring> FileNames() const {
        std::vector<std::wstring> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
            names.push_back(entry.path().filename().wstring());
        }
        return names;
    }

    const test_support::TempFolder folder;
};

class HostBadInput : public HostRefusal {};

TEST_P(HostBadInput, EndsInOneLineBeforeAnythingIsDone) {
    WriteFile(folder.Path() + L"\\given", GetParam().content);
    EXPECT_EQ(ExpectRefused(ExitCode::BadInput).output, "");
    EXPECT_EQ(test_support::ReadFile(folder.Path() + L"\\kept"), "kept\n");
    EXPECT_EQ(FileNames().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(
    Options, HostBadInput,
    testing::Values(
        Refusal{{L"--dayz", L"3"}, "there is no option '--dayz'; see tallyport_host --help"},
        Refusal{{L"--days", L"three"},
                "--days: 'three' is not a whole number from 0 to 36500; see tallyport_host --help"},
        Refusal{{L"--hours", L"-1"},
                "--hours: '-1' is not a whole number from 0 to 876000; see tallyport_host --help"},
        Refusal{{L"--seconds", L"1", L"--seconds", L"2"},
                "--seconds: At Most 1 required but received 2; see tallyport_host --help"},
        Refusal{{L"--machine"}, "--machine: 1 required FILE missing; see tallyport_host --help"},
        Refusal{{L"--fresh", L"--keep-state"},
                "--keep-state excludes --fresh; see tallyport_host --help"},
        Refusal{{L"--list-devices", L"--events", L"{}\\kept"},
                "--events is for a run, and --list-devices starts none; leave one of them out"},
        Refusal{{L"--fresh", L"--list-devices"},
                "--fresh is for a run, and --list-devices starts none; leave one of them out"},
        Refusal{{L"--from", L"{}\\given"},
                "--from shows a record as a page; name the page's file with --page"},
        Refusal{{L"--page", L"{}\\kept", L"--from-log", L"{}\\given"},
                "--from-log goes with a record of events; name that with --from"},
        Refusal{{L"--page", L"{}\\kept", L"--from", L"{}\\given", L"--seconds", L"1"},
                "--seconds is for a run, and --from starts none; leave one of them out"},
        Refusal{{L"--events", L"{}\\kept", L"--log", L"{}\\.\\KEPT"},
                "--events and --log name the same file, '{}\\kept'; name two"},
        Refusal{{L"--script", L"{}\\given", L"--page", L"{}\\given"},
                "--script and --page name the same file, '{}\\given'; name two"}));

std::string FileError(DWORD error) { return Win32ErrorText(error) + "; name another file"; }

INSTANTIATE_TEST_SUITE_P(
    Files, HostBadInput,
    testing::Values(
        Refusal{{L"--script", L"{}\\none", L"--events", L"{}\\kept"},
                "cannot read the script '{}\\none': " + FileError(ERROR_FILE_NOT_FOUND)},
        Refusal{{L"--machine", L"{}"},
                "cannot read the machine file '{}': " + FileError(ERROR_ACCESS_DENIED)},
        Refusal{{L"--page", L"{}\\kept", L"--from", L"{}\\none"},
                "cannot read the record of events '{}\\none': " + FileError(ERROR_FILE_NOT_FOUND)},
        Refusal{
            {L"--events", L"{}\\none\\a", L"--log", L"{}\\kept"},
            "cannot write the file of --events, '{}\\none\\a': " + FileError(ERROR_PATH_NOT_FOUND)},
        Refusal{{L"--events", L"{}\\new", L"--log", L"{}"},
                "cannot write the file of --log, '{}': " + FileError(ERROR_ACCESS_DENIED)},
        Refusal{
            {L"--page", L"{}\\none\\a", L"--seconds", L"1"},
            "cannot write the file of --page, '{}\\none\\a': " + FileError(ERROR_PATH_NOT_FOUND)},
        Refusal{{L"--page", L"{}", L"--from", L"{}\\given"},
                "cannot write the file of --page, '{}': " + FileError(ERROR_ACCESS_DENIED)},
        Refusal{{L"--plugin", L"{}\\none.dll", L"--events", L"{}\\kept"},
                "there is no plug-in '{}\\none.dll'; name the DLL's file with --plugin"}));

constexpr char kWithEvent[] =
    R"({"time":"2026-11-20T18:54:03.120Z","id":992614500,"fields":[{"key":"P","value":"X"}]})"
    "\n";
constexpr char kPlug[] = R"({"at": "0s", "do": "plug_device", "device": "USB\\1"})";
constexpr char kCorrect[] = "; correct or remove the line, or record the run again with --events";

INSTANTIATE_TEST_SUITE_P(
    Contents, HostBadInput,
    testing::Values(
        Refusal{{L"--script", L"{}\\given", L"--events", L"{}\\kept", L"--log", L"{}\\new"},
                "{}\\given:2: not valid JSON at column 1; write for example {\"at\": \"3d 04:00\", "
                "\"do\": \"stop\"}",
                "# fine\nstop\n"},
        Refusal{{L"--script", L"{}\\given", L"--events", L"{}\\kept"},
                "{}\\given:1: devices are plugged on simulated machines only; name one with "
                "--machine FILE",
                kPlug},
        Refusal{{L"--machine", L"{}\\given"},
                "{}\\given: /display: unknown key \"x\"; known here are \"topology\", \"paths\"",
                R"({"display": {"x": 1}})"},
        Refusal{{L"--page", L"{}\\kept", L"--from", L"{}\\given"},
                std::string("{}\\given:2: not valid JSON at column 8") + kCorrect,
                std::string(kWithEvent) + "{\"time\""},
        Refusal{{L"--page", L"{}\\kept", L"--from", L"{}\\given"},
                std::string("{}\\given:1: /id: expected a whole number from -2147483648 to "
                            "2147483647, found 4294967296") +
                    kCorrect,
                R"({"time":"2026-11-20T18:54:03.120Z","id":4294967296,"fields":[]})"},
        Refusal{{L"--page", L"{}\\kept", L"--from", L"{}\\given"},
                std::string("{}\\given:1: /time: expected a time of the form "
                            "\"2026-11-20T18:54:03.120Z\", found \"yesterday\"") +
                    kCorrect,
                R"({"time":"yesterday","id":1,"fields":[]})"},
        Refusal{{L"--page", L"{}\\kept", L"--from", L"{}\\given"},
                std::string("{}\\given:1: /fields/0: the key \"value\" is missing") + kCorrect,
                R"({"time":"2026-11-20T18:54:03.120Z","id":1,"fields":[{"key":"a"}]})"}));

std::string StepFailed(const std::string& step) {
    return "the plug-in's " + step +
           " failed; what it logged before tells more, and --log FILE keeps it";
}

std::string StepThrew(const std::string& step, const std::string& what = ": no luck") {
    return "the plug-in's " + step +
           " ended with an exception, which would end the suite's process" + what +
           "; what it logged before tells more, and --log FILE keeps it";
}

Refusal OfPlugin(const wchar_t* fileName, const std::string& message) {
    return {{L"--seconds", L"0", L"--plugin", L"{plugins}\\" + std::wstring(fileName)}, message};
}

class HostBadPlugin : public HostRefusal {};

TEST_P(HostBadPlugin, EndsInOneLineThatNamesTheStep) {
    WriteFile(folder.Path() + L"\\text.dll", "no library");
    ExpectRefused(ExitCode::RunFailed);
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, HostBadPlugin,
    testing::Values(
        Refusal{{L"--plugin", L"{}\\text.dll"},
                "cannot load the plug-in '{}\\text.dll': " + Win32ErrorText(ERROR_BAD_EXE_FORMAT) +
                    "; is it a 64-bit Windows library?"},
        OfPlugin(L"refusing_in_load.dll",
                 "cannot load the plug-in '{plugins}\\refusing_in_load.dll': " +
                     Win32ErrorText(ERROR_DLL_INIT_FAILED) +
                     "; its entry point refused, as it does without a plug-in manager: put "
                     "ZedPluginsManager.dll beside the host"),
        OfPlugin(L"silent_plugin.dll",
                 "'{plugins}\\silent_plugin.dll' registered no plug-in with the manager when it "
                 "was loaded; is it a plug-in?"),
        OfPlugin(L"refusing_in_registration.dll",
                 "'{plugins}\\refusing_in_registration.dll' registered no factory, so it cannot be "
                 "created; set one in its registration"),
        OfPlugin(L"refusing_in_factory.dll", StepFailed("factory")),
        OfPlugin(L"refusing_in_Initialize.dll", StepFailed("Initialize")),
        OfPlugin(L"refusing_in_Start.dll", StepFailed("Start")),
        OfPlugin(L"refusing_in_Stop.dll", StepFailed("Stop")),
        OfPlugin(L"refusing_in_Uninitialize.dll", StepFailed("Uninitialize")),
        OfPlugin(L"throwing_in_factory.dll", StepThrew("factory")),
        OfPlugin(L"throwing_in_Initialize.dll", StepThrew("Initialize")),
        OfPlugin(L"throwing_in_Start.dll", StepThrew("Start")),
        OfPlugin(L"throwing_in_Stop.dll", StepThrew("Stop")),
        OfPlugin(L"throwing_in_Uninitialize.dll", StepThrew("Uninitialize")),
        OfPlugin(L"throwing_a_number.dll", StepThrew("Start", ""))));

}  // namespace
}  // namespace host_test
