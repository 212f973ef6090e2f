// What the programs of this folder try, and how much of it.
#pragma once

#include <cstdint>
#include <string>

#include "support/reliability_record.h"

namespace reliability_test {

/// docs/reliability.md says how to ask for other numbers than these.
struct Options {
    std::uint64_t seed = 1;  ///< Where all random choices start.
    bool full = test_support::FullCounts();
    unsigned rounds = full ? 1000 : 60;
    unsigned days = full ? 60 : 15;
    unsigned moments = full ? 240 : 24;
    unsigned lives = full ? 60 : 8;
    unsigned pairs = full ? 2000 : 60;
};

/// Set before the tests run.
const Options& TheOptions();

/// Adds a row to this program's record, which is written when all its tests are done, and prints
/// it.
void AddRow(const std::string& what, std::uint64_t tried, std::uint64_t wrong);

}  // namespace reliability_test
