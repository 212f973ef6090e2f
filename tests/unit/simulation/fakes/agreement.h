// The same questions to the real system and to the fakes.
#pragma once

#include <windows.h>
#include <setupapi.h>

#include <vector>

namespace simulation {

/// It exists and has a version resource.
inline constexpr wchar_t kVersionedFile[] = L"C:\\windows\\system32\\kernel32.dll";

/// A registry value that exists.
struct Value {
    const char* key;
    const char* name;
};

/// A HID device of the system at hand, and what it takes to ask for it. The interface's path is
/// behind `detail`.
struct Subject {
    explicit Subject(const Value& existing);
    ~Subject();
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    LONG Query(UINT32 flags, UINT32 pathRoom, UINT32 modeRoom, DISPLAYCONFIG_TOPOLOGY_ID* wanted);
    LONG NameSource(UINT32 requestSize, LUID adapter, UINT32 id, int kind = 1);

    const Value value;
    HDEVINFO set;
    HDEVINFO emptySet;
    SP_DEVINFO_DATA device{};
    SP_DEVICE_INTERFACE_DATA offered{};
    alignas(8) BYTE block[2048] = {};
    SP_DEVICE_INTERFACE_DETAIL_DATA_W* const detail =
        reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block);
    wchar_t text[1024] = {};
    HANDLE file = nullptr;
    HANDLE printer = nullptr;
    HKEY key = nullptr;
    DWORD size = 0;
    DWORD count = 0;
    DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
    UINT32 pathCount = 8;
    UINT32 modeCount = 16;
    DISPLAYCONFIG_PATH_INFO paths[8]{};
    DISPLAYCONFIG_MODE_INFO modes[16]{};
    DISPLAYCONFIG_TOPOLOGY_ID topology{};
};

struct Question {
    const char* text;
    LONG (*ask)(Subject& s);
};

/// 0 for success, else the last error.
LONG Outcome(BOOL result);

/// Asks each question twice, each time on a fresh subject: first the real system, then a simulated
/// machine with about the same devices. Right and wrong uses of a protocol have to come out alike.
void ExpectSameAnswers(const std::vector<Question>& questions);

}  // namespace simulation
