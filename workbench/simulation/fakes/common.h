// Small things that several families of fakes need.
#pragma once

#include <string_view>

namespace simulation {

/// Whether the system takes two names (ids, paths, queues) for the same: letter case does not
/// count.
bool SameName(std::wstring_view left, std::wstring_view right);

}  // namespace simulation
