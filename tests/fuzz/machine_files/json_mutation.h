// Documents that are nearly right.
#pragma once

#include <string>

#include "fuzz/random.h"

namespace fuzz_machine_files {

/// A JSON document after a few changes: to its tree, to its text or to both. Most results are still
/// JSON.
std::string Mutated(fuzz::Random& random, const std::string& document);

}  // namespace fuzz_machine_files
