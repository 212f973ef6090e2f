#include "support/utf8_sequence.h"

namespace test_support {

std::string Utf8Of(std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        return std::string(1, static_cast<char>(codePoint));
    }
    std::string tail;
    std::uint32_t rest = codePoint;
    std::uint32_t leadLimit = 0x40;  // What the lead byte has room for.
    std::uint32_t leadMark = 0x80;
    do {
        tail.insert(tail.begin(), static_cast<char>(0x80 | (rest & 0x3F)));
        rest >>= 6;
        leadLimit >>= 1;
        leadMark = leadMark >> 1 | 0x80;
    } while (rest >= leadLimit);
    return static_cast<char>(leadMark | rest) + tail;
}

std::size_t Utf8SequenceLength(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) {
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC0 || lead >= 0xF8 || text.size() < length) {
        return 0;
    }
    std::uint32_t codePoint = lead & (0x7Fu >> length);
    for (const char byte : text.substr(1, length - 1)) {
        if ((byte & 0xC0) != 0x80) {
            return 0;
        }
        codePoint = codePoint << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    // An overlong form would come out shorter when written again.
    return !surrogate && codePoint <= 0x10FFFF && Utf8Of(codePoint).size() == length ? length : 0;
}

}  // namespace test_support
