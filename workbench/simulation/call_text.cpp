#include "simulation/call_text.h"

#include <cinttypes>
#include <cstdio>

namespace simulation {

std::string GuidText(const GUID& guid) {
    char text[40];
    std::snprintf(text, sizeof(text), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(guid.Data1), guid.Data2, guid.Data3, guid.Data4[0],
                  guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5],
                  guid.Data4[6], guid.Data4[7]);
    return text;
}

// What may stand where a text is expected: nothing, an atom or an ordinal.

std::string CallText(const wchar_t* text) {
    return IS_INTRESOURCE(text) ? CallText(static_cast<const void*>(text)) : ToUtf8(text);
}

std::string CallText(const char* text) {
    return IS_INTRESOURCE(text) ? CallText(static_cast<const void*>(text)) : text;
}

std::string CallText(const GUID& guid) { return GuidText(guid); }

std::string CallText(const GUID* guid) { return guid == nullptr ? "null" : GuidText(*guid); }

std::string CallText(const LUID& luid) {
    return std::to_string(luid.HighPart) + ":" + std::to_string(luid.LowPart);
}

std::string CallText(const void* pointer) {
    if (pointer == nullptr) {
        return "null";
    }
    char text[24];
    std::snprintf(text, sizeof(text), "0x%" PRIXPTR, reinterpret_cast<std::uintptr_t>(pointer));
    return text;
}

std::string CallText(std::nullptr_t) { return "null"; }

}  // namespace simulation
