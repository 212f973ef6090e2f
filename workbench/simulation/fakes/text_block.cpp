#include "simulation/fakes/text_block.h"

#include <cstring>

namespace simulation {

wchar_t* TextBlock::Place(const std::optional<std::wstring>& text) {
    if (!text) {
        return nullptr;
    }
    const std::size_t offset = used;
    const std::size_t bytes = (text->size() + 1) * sizeof(wchar_t);
    used += bytes;
    if (block == nullptr) {
        return nullptr;
    }
    std::memcpy(block + offset, text->c_str(), bytes);
    return reinterpret_cast<wchar_t*>(block + offset);
}

}  // namespace simulation
