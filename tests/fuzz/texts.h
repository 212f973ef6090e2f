// Random texts of the kinds that break programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/random.h"

namespace fuzz {

/// A length from 0 to `most`, often 0, 1 or one around a limit of the product.
std::size_t MakeLength(Random& random, std::size_t most);

/// UTF-16 units of all kinds: letters, control characters, JSON's own characters, lines, pairs,
/// half pairs, now and then a NUL.
std::wstring MakeText(Random& random, std::size_t most);

/// Pieces that a text of a known form consists of, in any order, with rubbish in between.
std::wstring MakeFromPieces(Random& random, const std::vector<std::wstring_view>& pieces,
                            std::size_t most);

std::string MakeBytes(Random& random, std::size_t length);

}  // namespace fuzz
