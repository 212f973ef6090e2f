#include "simulation/sid_text.h"

#include <cstdint>
#include <regex>
#include <sstream>

namespace simulation {

std::optional<std::vector<BYTE>> SidFromText(const std::wstring& text) {
    static const std::wregex kForm(L"S-1-(\\d{1,15})((-\\d{1,10}){1,15})");
    std::wsmatch match;
    if (!std::regex_match(text, match, kForm)) {
        return std::nullopt;
    }
    const std::uint64_t authority = std::stoull(match[1]);
    bool fits = authority <= 0xFFFF'FFFF'FFFF;
    std::vector<BYTE> sid{SID_REVISION, 0};
    for (int shift = 40; shift >= 0; shift -= 8) {
        sid.push_back(static_cast<BYTE>(authority >> shift));
    }
    std::wistringstream subAuthorities(match[2]);
    wchar_t dash = 0;
    for (std::uint64_t number = 0; subAuthorities >> dash >> number; ++sid[1]) {
        fits = fits && number <= 0xFFFF'FFFF;
        for (int shift = 0; shift < 32; shift += 8) {
            sid.push_back(static_cast<BYTE>(number >> shift));
        }
    }
    return fits ? std::optional(sid) : std::nullopt;
}

}  // namespace simulation
