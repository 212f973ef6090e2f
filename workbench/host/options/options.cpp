#include "host/options/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "host/files.h"

namespace host {
namespace {

constexpr char kDescription[] =
    "Loads the plug-in as the suite's host does, lets it run, and shows what it logs and sends.";

constexpr char kFooter[] =
    R"(How long a run lasts is machine time. With --days or --hours, ./dev run puts everything on a fast
clock, on which a day takes two or three seconds; the program by itself waits in real time.

Examples:
  ./dev run                                  eleven days of an office laptop, all options set
  ./dev run --seconds 5                      this computer: start, see the first reports, stop
  ./dev run --days 7 --events week.ndjson    a week on the fast clock, with a record of all events
  ./dev run --seconds 10 --machine laptop.json --script story.jsonl
                                             a described machine and timed happenings
  ./dev run --list-devices                   what the plug-in's device inventory would hold

Ctrl-C ends a run early and in order. The exit code is 0 when everything ran in order, 1 when the
plug-in did not load, start or stop as it should, and 2 when an option or a file is wrong. Machine
files, the script language and the rest: docs/host.md
)";

/// A hundred years: more is a slip of the finger.
constexpr std::int64_t kMaxDays = 36500;

struct Duration {
    std::int64_t days = 0;
    std::int64_t hours = 0;
    std::int64_t seconds = 0;
};

void AddDurationOption(CLI::App& app, const char* name, std::int64_t& value, std::int64_t most,
                       const char* description) {
    const auto check = [most](const std::string& text) {
        std::int64_t number = 0;
        return CLI::detail::lexical_cast(text, number) && number >= 0 && number <= most
                   ? std::string()
                   : "'" + text + "' is not a whole number from 0 to " + std::to_string(most);
    };
    app.add_option(name, value, description)
        ->check(CLI::Validator(check, ""))
        ->type_name("N")
        ->group("How long");
}

constexpr char kSeeHelp[] = "; see tallyport_host --help";

/// `unknown` are those arguments that the library could make nothing of, in no certain order.
BadInput UnknownArgument(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& unknown) {
    const std::string first =
        *std::find_first_of(arguments.begin(), arguments.end(), unknown.begin(), unknown.end());
    return BadInput("there is no option '" + first + "'" + kSeeHelp);
}

/// The library's messages may have several lines and name no way out.
BadInput BadOption(const CLI::ParseError& error) {
    std::string message = error.what();
    std::replace(message.begin(), message.end(), '\n', ' ');
    return BadInput(message + kSeeHelp);
}

/// An output would replace an input, or another output.
void RefuseSameFiles(const std::vector<std::pair<const char*, std::string*>>& files) {
    const auto comparable = [](const std::string& path) {
        std::wstring full = FullPath(path);
        CharLowerBuffW(full.data(), static_cast<DWORD>(full.size()));
        return full;
    };
    for (auto first = files.begin(); first != files.end(); ++first) {
        for (auto second = first + 1; second != files.end(); ++second) {
            if (!first->second->empty() && !second->second->empty() &&
                comparable(*first->second) == comparable(*second->second)) {
                throw BadInput(std::string(first->first) + " and " + second->first +
                               " name the same file, '" + *first->second + "'; name two");
            }
        }
    }
}

/// Throws BadInput when `act`, which starts no run, stands beside an option other than `others`.
void RefuseRunOptions(const CLI::App& app, const std::string& act,
                      std::initializer_list<std::string_view> others) {
    const std::string advice = " is for a run, and " + act + " starts none; leave one of them out";
    for (const CLI::Option* const option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->count() != 0 && name != act &&
            std::find(others.begin(), others.end(), name) == others.end()) {
            throw BadInput(name + advice);
        }
    }
}

/// A record is read for a page, and a log to stand beside a record.
void CheckRecord(const CLI::App& app, const Options& options) {
    if (options.from.empty() && !options.fromLog.empty()) {
        throw BadInput("--from-log goes with a record of events; name that with --from");
    }
    if (!options.from.empty()) {
        if (options.page.empty()) {
            throw BadInput("--from shows a record as a page; name the page's file with --page");
        }
        RefuseRunOptions(app, "--from", {"--from-log", "--page"});
    }
}

}  // namespace

std::optional<Options> ParseOptions(const std::vector<std::string>& arguments, std::ostream& help) {
    Options options;
    Duration duration;
    bool keepState = false;
    bool fresh = false;

    CLI::App app(kDescription, "tallyport_host");
    app.footer(kFooter);
    app.set_help_flag();  // Listed where it is added, which is to be the end.
    AddDurationOption(app, "--days", duration.days, kMaxDays, "Run N days");
    AddDurationOption(app, "--hours", duration.hours, kMaxDays * 24, "Run N hours");
    AddDurationOption(app, "--seconds", duration.seconds, kMaxDays * 86400,
                      "Run N seconds. The three add up; without any of them a run takes 5 seconds");

    std::vector<std::pair<const char*, std::string*>> files;
    const auto addFile = [&](const char* name, std::string& path, const char* group,
                             const char* description) {
        app.add_option(name, path, description)->type_name("FILE")->group(group);
        files.emplace_back(name, &path);
    };
    addFile("--plugin", options.plugin, "What runs",
            "The plug-in; without it TallyportPlugin.dll beside this program");
    addFile(
        "--machine", options.machine, "What runs",
        "Let the plug-in see the machine that this JSON file describes instead of this computer");
    app.add_flag("--list-devices", options.listDevices,
                 "Start nothing; show the devices, printers and displays that the plug-in would "
                 "find, and which of them it would report")
        ->group("What runs");
    addFile("--script", options.script, "What runs",
            "Play the timed happenings of this file, one JSON object per line");
    addFile("--events", options.events, "What is written",
            "Record every event, one JSON object per line; replaces an existing file");
    addFile("--log", options.log, "What is written",
            "Write every log line; replaces an existing file");
    addFile("--page", options.page, "What is written",
            "Write one HTML page that shows what left the machine, and why; replaces an existing "
            "file");
    addFile("--from", options.from, "What is written",
            "Start nothing; make the page from this file, which --events wrote");
    addFile("--from-log", options.fromLog, "What is written",
            "Show this file, which --log wrote, beside the events of --from");
    app.add_flag("--quiet", options.quiet, "Show the summary only")->group("What is written");
    app.add_flag("--every-line", options.everyLine,
                 "Show repeated log lines and events in full; a run of more than a minute leaves "
                 "them out")
        ->group("What is written");

    auto* const keep = app.add_flag("--keep-state", keepState,
                                    "Leave the values that the plug-in keeps in the registry "
                                    "between its runs as they are (the default on Windows)");
    auto* const remove = app.add_flag("--fresh", fresh,
                                      "Remove those values first, so that every report is due "
                                      "(the default under Wine)");
    keep->group("Registry")->excludes(remove);
    remove->group("Registry");

    app.set_help_flag("--help,-h", "Show this text")->group("Other");

    try {
        // The library takes them last to first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        help << app.help();
        return std::nullopt;
    } catch (const CLI::ExtrasError&) {
        throw UnknownArgument(arguments, app.remaining());
    } catch (const CLI::ParseError& error) {
        throw BadOption(error);
    }
    if (options.listDevices) {
        RefuseRunOptions(app, "--list-devices", {"--machine", "--quiet"});
    }
    CheckRecord(app, options);
    RefuseSameFiles(files);
    if (app.count("--days") + app.count("--hours") + app.count("--seconds") != 0) {
        options.duration = std::chrono::hours(duration.days * 24 + duration.hours) +
                           std::chrono::seconds(duration.seconds);
    }
    options.keptState = keepState ? KeptState::Keep
                        : fresh   ? KeptState::Remove
                                  : KeptState::Automatic;
    return options;
}

}  // namespace host
