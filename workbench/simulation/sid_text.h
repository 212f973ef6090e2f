// Security identifiers in their binary form.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace simulation {

/// The binary SID of a text such as "S-1-5-21-1-2-3-1001"; nothing when the text is not one.
std::optional<std::vector<BYTE>> SidFromText(const std::wstring& text);

}  // namespace simulation
