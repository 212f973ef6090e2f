#include "simulation/sid_text.h"

#include <cstdint>
#include <cstring>

namespace simulation {
namespace {

/// Takes "-" and a decimal number of at most `limit` off the front of `rest`.
std::optional<std::uint64_t> TakeNumber(std::wstring_view& rest, std::uint64_t limit) {
    if (rest.size() < 2 || rest[0] != L'-') {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    std::size_t used = 1;
    for (; used < rest.size() && rest[used] >= L'0' && rest[used] <= L'9'; ++used) {
        number = number * 10 + static_cast<std::uint64_t>(rest[used] - L'0');
        if (number > limit) {
            return std::nullopt;
        }
    }
    rest.remove_prefix(used);
    return used == 1 ? std::nullopt : std::optional(number);
}

}  // namespace

std::optional<std::vector<BYTE>> SidFromText(const std::wstring& text) {
    constexpr std::wstring_view kPrefix = L"S-1";
    constexpr std::uint64_t kLargestAuthority = 0xFFFF'FFFF'FFFF;
    std::wstring_view rest = text;
    if (rest.substr(0, kPrefix.size()) != kPrefix) {
        return std::nullopt;
    }
    rest.remove_prefix(kPrefix.size());
    const auto authority = TakeNumber(rest, kLargestAuthority);
    if (!authority) {
        return std::nullopt;
    }
    std::vector<DWORD> subAuthorities;
    while (!rest.empty()) {
        const auto number = TakeNumber(rest, 0xFFFFFFFF);
        if (!number) {
            return std::nullopt;
        }
        subAuthorities.push_back(static_cast<DWORD>(*number));
    }
    if (subAuthorities.empty() || subAuthorities.size() > SID_MAX_SUB_AUTHORITIES) {
        return std::nullopt;
    }

    std::vector<BYTE> sid{SID_REVISION, static_cast<BYTE>(subAuthorities.size())};
    for (int shift = 40; shift >= 0; shift -= 8) {
        sid.push_back(static_cast<BYTE>(*authority >> shift));
    }
    const auto* numbers = reinterpret_cast<const BYTE*>(subAuthorities.data());
    sid.insert(sid.end(), numbers, numbers + subAuthorities.size() * sizeof(DWORD));
    return sid;
}

}  // namespace simulation
