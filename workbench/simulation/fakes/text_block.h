// Blocks that the print spooler answers with: structures first, their texts behind them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

namespace simulation {

/// Lays texts out behind the structures of a block. Without a block it only counts, so that the
/// same statements tell the size that is needed and fill the block afterwards.
class TextBlock {
public:
    /// `blockSize` is what there is room for.
    TextBlock(BYTE* target, std::size_t blockSize, std::size_t structuresSize)
        : block(target), size(blockSize), used(structuresSize) {}

    /// Where the text is in the block; null for an absent text, and when only counting. A text that
    /// the block has no room for stays where it is.
    wchar_t* Place(const std::optional<std::wstring>& text) {
        if (!text) {
            return nullptr;
        }
        const std::size_t bytes = (text->size() + 1) * sizeof(wchar_t);
        const std::size_t offset = used;
        used += bytes;
        if (block == nullptr) {
            return nullptr;
        }
        if (used > size) {
            return const_cast<wchar_t*>(text->c_str());
        }
        std::memcpy(block + offset, text->c_str(), bytes);
        return reinterpret_cast<wchar_t*>(block + offset);
    }

    /// Bytes of the structures and all texts so far.
    DWORD Size() const { return static_cast<DWORD>(used); }

private:
    BYTE* block;
    std::size_t size;
    std::size_t used;
};

}  // namespace simulation
