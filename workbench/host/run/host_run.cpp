#include "host/run/host_run.h"

#include <algorithm>
#include <memory>

#include "common/text.h"
#include "host/files.h"
#include "host/host_error.h"
#include "host/machine_time.h"
#include "host/page/page.h"
#include "host/run/script.h"
#include "host/run/story.h"
#include "host/run/surroundings.h"

namespace host {
namespace {

constexpr wchar_t kPluginFileName[] = L"TallyportPlugin.dll";

/// Full path of the plug-in.
std::wstring FindPlugin(const std::string& given) {
    std::wstring path = given.empty() ? OwnFolder() + L"\\" + kPluginFileName : FullPath(given);
    if (!IsFile(path)) {
        throw BadInput(given.empty() ? workbench::ToUtf8(kPluginFileName) + " is missing in '" +
                                           workbench::ToUtf8(OwnFolder()) +
                                           "'; build it: ./dev build, or name another with --plugin"
                                     : "there is no plug-in '" + given +
                                           "'; name the DLL's file with --plugin");
    }
    return path;
}

std::vector<Happening> LoadScript(const std::string& path, const Surroundings& surroundings) {
    if (path.empty()) {
        return {};
    }
    std::vector<Happening> script = ParseScript(ReadTextFile(path, "script"), path);
    for (const Happening& happening : script) {
        surroundings.Check(happening);
    }
    return script;
}

/// Everything is looked at before anything is changed.
void CheckOutputs(const Options& options) {
    for (const auto& [option, path] : {std::pair("--events", options.events),
                                       {"--log", options.log},
                                       {"--page", options.page}}) {
        if (!path.empty()) {
            CheckWritable(option, path);
        }
    }
}

/// The suite writes events and log into their files while this lives.
class SuiteFiles {
public:
    SuiteFiles(const Suite& theSuite, const Options& options) : suite(theSuite) {
        Open("--events", options.events, suite.openEventRecord);
        Open("--log", options.log, suite.openLogFile);
    }
    ~SuiteFiles() {
        suite.closeEventRecord();
        suite.closeLogFile();
    }
    SuiteFiles(const SuiteFiles&) = delete;
    SuiteFiles& operator=(const SuiteFiles&) = delete;

private:
    static void Open(const char* option, const std::string& path, int (*open)(const wchar_t*)) {
        if (path.empty()) {
            return;
        }
        EmptyFile(option, path);
        if (const int error = open(workbench::ToWide(path).c_str()); error != 0) {
            throw Unwritable(option, path, static_cast<DWORD>(error));
        }
    }

    const Suite& suite;
};

/// The hourly lines of a long run would bury the others.
bool FoldsRepeats(const Options& options) {
    return !options.everyLine && Story::StatusInterval(options.duration).has_value();
}

workbench::TextLines Heading(const Options& options, const std::wstring& plugin,
                             const Surroundings& surroundings) {
    workbench::TextTable table;
    table.rows.push_back({"plug-in", workbench::ToUtf8(plugin)});
    table.rows.push_back({"runs on", surroundings.Describe()});
    table.rows.push_back({"for", FormatMachineTime(options.duration) + " of machine time"});
    if (!options.script.empty()) {
        table.rows.push_back({"script", options.script});
    }
    if (!options.events.empty()) {
        table.rows.push_back({"events", options.events + ", one line of JSON for each"});
    }
    if (!options.log.empty()) {
        table.rows.push_back(
            {"log", options.log + ", with every log line" +
                        (FoldsRepeats(options) ? "; below, repeats are left out" : "")});
    }
    workbench::TextLines lines = FormatTable(table);
    lines.emplace_back();
    return lines;
}

/// Happenings that the run does not reach would be missed without a word.
void NoteUnreached(const std::vector<Happening>& script, std::chrono::seconds duration,
                   Screen& screen) {
    const auto unreached = std::count_if(script.begin(), script.end(),
                                         [&](const Happening& one) { return one.at >= duration; });
    if (unreached != 0) {
        screen.Line(LineKind::Note, std::to_string(unreached) + " of " +
                                        std::to_string(script.size()) +
                                        " happenings come after the end of the run");
    }
}

workbench::TextLines Closing(const RunObserver& observer, int listsBefore, const RunClock& clock,
                             const Options& options) {
    workbench::TextLines lines{"",
                               "Ran " + FormatMachineTime(*clock.Elapsed()) + " of machine time"};
    lines.emplace_back();
    const workbench::TextLines summary = observer.Summary(listsBefore);
    lines.insert(lines.end(), summary.begin(), summary.end());
    if (!options.events.empty()) {
        lines.push_back("Every event is in " + options.events);
    }
    if (!options.log.empty()) {
        lines.push_back("Every log line is in " + options.log);
        if (const std::size_t hidden = observer.LinesNotShown(); hidden != 0 && !options.quiet) {
            lines.back() += ", with " + std::to_string(hidden) + " that are not shown above";
        }
    }
    if (!options.page.empty()) {
        lines.push_back("What left the machine, and why, is in " + options.page);
    }
    return lines;
}

}  // namespace

void RunHost(const Options& options) {
    RunClock clock;
    Screen screen(clock, options.quiet);
    // Everything that may be wrong is looked at before anything is changed.
    const Suite suite(OwnFolder());
    const std::wstring plugin = FindPlugin(options.plugin);
    const std::unique_ptr<Surroundings> surroundings = MakeSurroundings(options, suite, screen);
    const std::vector<Happening> script = LoadScript(options.script, *surroundings);
    CheckOutputs(options);

    if (!options.quiet) {
        screen.Text(Heading(options, plugin, *surroundings));
    }
    screen.Line(LineKind::Step,
                "Loaded ZedPluginsManager.dll and the other libraries of the suite");
    RunObserver observer(suite, clock, screen, FoldsRepeats(options));
    NoteUnreached(script, options.duration, screen);
    records::RunRecord record{"A run on " + surroundings->Describe(), {}, {}, {}};
    if (!options.page.empty()) {
        observer.KeepRecord(record);
    }
    surroundings->Prepare();
    const int listsBefore = surroundings->DeviceListsSent();
    if (listsBefore != 0) {
        screen.Line(LineKind::Note, std::to_string(listsBefore) + " of " +
                                        std::to_string(kMostDeviceLists) +
                                        " device lists were sent before this run");
    }
    const SuiteFiles files(suite, options);
    Story({suite, plugin, *surroundings, clock, screen, observer}).Play(options.duration, script);
    if (!options.page.empty()) {
        record.firstList = listsBefore + 1;
        WritePage(record, options.page);
    }
    screen.Text(Closing(observer, listsBefore, clock, options));
}

}  // namespace host
