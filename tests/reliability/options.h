// What the programs of this folder try, and how much of it.
#pragma once

#include <cstdint>
#include <string>

namespace reliability_test {

/// The usual numbers; docs/reliability.md says how to ask for others.
struct Options {
    std::uint64_t seed = 1;  ///< Where all random choices start.
    unsigned rounds = 1000;
    unsigned days = 60;
    unsigned moments = 240;
    unsigned lives = 60;
};

/// Set before the tests run.
const Options& TheOptions();

/// Adds a row to this program's record, which is written when all its tests are done, and prints
/// it.
void AddRow(const std::string& what, std::uint64_t tried, std::uint64_t wrong);

}  // namespace reliability_test
