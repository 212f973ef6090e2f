// Tells which case runs when the program crashes, is aborted or hangs.
#pragma once

#include <cstdint>
#include <string>

namespace fuzz {

/// Once, before all tests: a crash, an abort or a case that takes minutes ends the program with a
/// line that names the case's command.
void InstallCaseWatch();

void WatchCasesOf(const std::string& test, std::uint64_t seed);
void CaseBegins(std::uint64_t number);
void StopWatching();

/// The command, run in the project's folder, that repeats a case of the watched test.
std::string RepeatCommand(std::uint64_t number);

}  // namespace fuzz
