#include "fuzz/texts.h"

#include <algorithm>

namespace fuzz {
namespace {

wchar_t Unit(Random& random, std::size_t first, std::size_t last) {
    return static_cast<wchar_t>(random.Between(first, last));
}

void AppendPair(Random& random, std::wstring& text) {
    text += Unit(random, 0xD800, 0xDBFF);
    text += Unit(random, 0xDC00, 0xDFFF);
}

void AppendCharacter(Random& random, std::wstring& text) {
    constexpr std::wstring_view kSpecial = L"\"\\/\b\f\n\r\t{}[]:,#&_ ";
    switch (random.Below(16)) {
        case 0:
            text += random.Pick(kSpecial);
            break;
        case 1:
            text += Unit(random, 1, 0x1F);
            break;
        case 2:
            AppendPair(random, text);
            break;
        case 3:
            text += Unit(random, 0xD800, 0xDFFF);
            break;
        case 4:
            text += Unit(random, 1, 0xFFFF);
            break;
        case 5:
            text += Unit(random, 0x7F, 0x7FF);
            break;
        case 6:
            text += Unit(random, 0x4E00, 0x9FFF);
            break;
        default:
            text += Unit(random, 0x20, 0x7E);
            break;
    }
}

}  // namespace

std::size_t MakeLength(Random& random, std::size_t most) {
    constexpr std::size_t kLimits[] = {0, 1, 8, 31, 32, 33, 64, 260};
    if (random.OneIn(3)) {
        return std::min(most, random.Pick(kLimits));
    }
    return random.Below(random.OneIn(4) ? most + 1 : std::min<std::size_t>(most, 40) + 1);
}

std::wstring MakeText(Random& random, std::size_t most) {
    const std::size_t length = MakeLength(random, most);
    std::wstring text;
    text.reserve(length + 1);
    if (random.OneIn(8)) {
        // The same again and again: the longest form of a text that there is.
        AppendCharacter(random, text);
        text.resize(length, text.front());
        return text;
    }
    while (text.size() < length) {
        AppendCharacter(random, text);
    }
    text.resize(length);
    if (length > 0 && random.OneIn(16)) {
        text[random.Below(length)] = L'\0';
    }
    return text;
}

std::wstring MakeFromPieces(Random& random, const std::vector<std::wstring_view>& pieces,
                            std::size_t most) {
    std::wstring text;
    for (std::size_t count = random.Below(10); count > 0; --count) {
        switch (random.Below(8)) {
            case 0:
                text += MakeText(random, 20);
                break;
            case 1:
                text += std::to_wstring(random.Bits());
                break;
            default:
                text += random.Pick(pieces);
                break;
        }
    }
    // Cut anywhere: the interesting ends are those in the middle of a piece.
    if (!text.empty() && random.OneIn(4)) {
        text.resize(random.Below(text.size() + 1));
    }
    text.resize(std::min(text.size(), most));
    return text;
}

std::string MakeBytes(Random& random, std::size_t length) {
    std::string bytes(length, '\0');
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (i % 8 == 0) {
            bits = random.Bits();
        }
        bytes[i] = static_cast<char>(bits >> (i % 8 * 8) & 0xFF);
    }
    return bytes;
}

}  // namespace fuzz
