// The command line.
#pragma once

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace host {

/// What becomes of the values that the plug-in keeps in the registry between its runs.
enum class KeptState {
    Automatic,  ///< Removed under Wine, where they are a demo's; left alone on Windows.
    Keep,
    Remove,
};

/// Paths are as typed, in UTF-8; an empty one was not given.
struct Options {
    std::chrono::seconds duration{5};
    std::string plugin;
    std::string machine;
    std::string script;
    std::string events;
    std::string log;
    std::string page;
    std::string from;     ///< Nothing runs; the page shows this record of events.
    std::string fromLog;  ///< The log that belongs to it.
    KeptState keptState = KeptState::Automatic;
    bool quiet = false;
    bool everyLine = false;
    bool listDevices = false;  ///< Nothing runs; of the rest only `machine` and `quiet` matter.
};

/// Reads the arguments behind the program's name, in UTF-8. When help is asked for, writes it to
/// `help` and returns nothing. Throws BadInput.
std::optional<Options> ParseOptions(const std::vector<std::string>& arguments, std::ostream& help);

}  // namespace host
