// Columns of text.
#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

using TextLines = std::vector<std::string>;

/// A table without frame.
struct TextTable {
    std::vector<std::vector<std::string>> rows;
    std::vector<std::size_t> rightAligned;  ///< Column indexes, for numbers.
    /// A text wider than this pushes the rest of its row to the right, instead of all rows.
    std::size_t maxAlignedWidth = std::numeric_limits<std::size_t>::max();
};

/// One line per row, the columns aligned and two blanks apart, without blanks at the end. Texts are
/// UTF-8; East Asian wide characters count as two columns.
TextLines FormatTable(const TextTable& table);

/// The same text without control characters, which would disturb a console: each becomes "\x1b".
std::string Printable(std::string_view text);

/// The text with `to` wherever `from` was.
std::string Replaced(std::string text, std::string_view from, std::string_view to);

/// "1 device", "2 devices".
std::string Plural(std::size_t count, const std::string& noun);

}  // namespace workbench
