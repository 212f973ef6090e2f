// Small things that several families of fakes need.
#pragma once

#include <windows.h>

#include <string_view>

namespace simulation {

/// Whether the system takes two names (ids, paths, queues) for the same: letter case does not
/// count.
inline bool SameName(std::wstring_view left, std::wstring_view right) {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace simulation
