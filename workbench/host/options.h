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
    KeptState keptState = KeptState::Automatic;
    bool quiet = false;
};

/// Reads the arguments behind the program's name, in UTF-8. When help is asked for, writes it to
/// `help` and returns nothing. Throws HostError.
std::optional<Options> ParseOptions(const std::vector<std::string>& arguments, std::ostream& help);

}  // namespace host
