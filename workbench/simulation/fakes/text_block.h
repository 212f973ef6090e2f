// Blocks that the print spooler answers with: structures first, their texts behind them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

namespace simulation {

/// Lays texts out behind the structures of a block. Without a block it only counts, so that the
/// same statements tell the size that is needed and fill the block afterwards.
class TextBlock {
public:
    TextBlock(BYTE* target, std::size_t structuresSize) : block(target), used(structuresSize) {}

    /// Where the text is in the block; null for an absent text, and when only counting.
    wchar_t* Place(const std::optional<std::wstring>& text);

    /// Bytes of the structures and all texts so far.
    DWORD Size() const { return static_cast<DWORD>(used); }

private:
    BYTE* block;
    std::size_t used;
};

}  // namespace simulation
