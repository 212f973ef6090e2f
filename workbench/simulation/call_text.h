// Arguments and results of Windows calls as readable text: numbers in decimal, texts as UTF-8,
// pointers, handles, atoms and ordinals as 0x..., null pointers as "null", GUIDs in braces.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "common/text.h"

namespace simulation {

using workbench::FromUtf8;
using workbench::ToUtf8;

std::string GuidText(const GUID& guid);

std::string CallText(const wchar_t* text);
std::string CallText(const char* text);
inline std::string CallText(const std::string& text) { return text; }
std::string CallText(const GUID& guid);
std::string CallText(const GUID* guid);
std::string CallText(const LUID& luid);
std::string CallText(const void* pointer);
std::string CallText(std::nullptr_t);

template <class Number,
          class = std::enable_if_t<std::is_arithmetic_v<Number> || std::is_enum_v<Number>>>
std::string CallText(Number number) {
    if constexpr (std::is_enum_v<Number>) {
        return std::to_string(static_cast<std::underlying_type_t<Number>>(number));
    } else {
        return std::to_string(number);
    }
}

template <class Result, class... Arguments>
std::string CallText(Result (*function)(Arguments...)) {
    return CallText(reinterpret_cast<const void*>(function));
}

}  // namespace simulation
