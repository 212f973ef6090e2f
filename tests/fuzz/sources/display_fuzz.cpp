// Monitors as the display configuration and the registry describe them, with names that fill their
// fields to the end.
#include <windows.h>
// windows.h has to come first.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "device_reporter/display_info.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "simulation/import_redirection.h"

namespace {

using DeviceReporter::DisplayInfo;
using fuzz::RequireSame;

constexpr std::size_t kSourceUnits = 32;
constexpr std::size_t kNameUnits = 64;
constexpr std::size_t kPathUnits = 128;
constexpr std::size_t kLeastEdid = 10;
// In digits.
constexpr std::size_t kMaskBegin = 24;
constexpr std::size_t kMaskEnd = 28;

struct Monitor {
    std::wstring source;  ///< Written without terminator, as are the next two.
    std::wstring name;
    std::wstring path;
    std::string edid;
    DWORD width = 0;
    DWORD bitsPerPixel = 0;
};

/// The failures are those of every monitor.
struct Displays {
    std::vector<Monitor> monitors;
    UINT32 topology = 0;
    bool keyFails = false;
    bool secondReadFails = false;
    bool modeFails = false;
};

void PrintTo(const Displays& displays, std::ostream* stream) {
    *stream << "topology " << displays.topology << (displays.keyFails ? ", no key" : "")
            << (displays.secondReadFails ? ", no value" : "")
            << (displays.modeFails ? ", no mode" : "");
    for (const Monitor& monitor : displays.monitors) {
        *stream << "\n    source " << testing::PrintToString(monitor.source) << ", name "
                << testing::PrintToString(monitor.name) << ", path "
                << testing::PrintToString(monitor.path) << ", EDID "
                << testing::PrintToString(monitor.edid) << ", width " << monitor.width
                << ", bits per pixel " << monitor.bitsPerPixel;
    }
}

Monitor MakeMonitor(fuzz::Random& random) {
    Monitor monitor;
    monitor.source = fuzz::MakeText(random, kSourceUnits);
    monitor.name = fuzz::MakeText(random, kNameUnits);
    monitor.path = L"\\\\?\\DISPLAY#ABC1234#5&2a3b&0&UID4353#{e6f07b5f}";
    if (random.OneIn(4)) {
        monitor.path += std::wstring(kPathUnits - monitor.path.size(), L'x');
    } else if (random.OneIn(8)) {
        monitor.path = fuzz::MakeText(random, kPathUnits);
    }
    monitor.edid = fuzz::MakeBytes(random, random.Between(kLeastEdid, 256));
    if (!random.OneIn(8)) {
        monitor.edid.replace(8, 2, "\x10\xAC");
    }
    monitor.width = static_cast<DWORD>(random.Bits());
    monitor.bitsPerPixel = static_cast<DWORD>(random.Bits());
    return monitor;
}

Displays MakeDisplays(fuzz::Random& random) {
    Displays displays;
    displays.monitors.resize(random.Below(4));
    for (Monitor& monitor : displays.monitors) {
        monitor = MakeMonitor(random);
    }
    displays.topology = static_cast<UINT32>(random.Below(20));
    displays.keyFails = random.OneIn(16);
    displays.secondReadFails = random.OneIn(16);
    displays.modeFails = random.OneIn(16);
    return displays;
}

const Displays* current = nullptr;
std::size_t described = 0;  ///< Which monitor the source request was for.
int openKeys = 0;

template <std::size_t kCapacity>
void Write(wchar_t (&field)[kCapacity], const std::wstring& text) {
    text.copy(field, kCapacity);
}

LONG WINAPI FakeBufferSizes(UINT32, UINT32* paths, UINT32* modes) {
    *paths = static_cast<UINT32>(current->monitors.size());
    *modes = 0;
    return ERROR_SUCCESS;
}

LONG WINAPI FakeQueryDisplayConfig(UINT32, UINT32* count, DISPLAYCONFIG_PATH_INFO* paths, UINT32*,
                                   DISPLAYCONFIG_MODE_INFO*, DISPLAYCONFIG_TOPOLOGY_ID* topology) {
    for (UINT32 i = 0; i < *count; ++i) {
        paths[i].sourceInfo.id = i;
        paths[i].targetInfo.id = i;
    }
    const UINT32 value = current->topology;
    std::memcpy(topology, &value, sizeof(value));
    return ERROR_SUCCESS;
}

LONG WINAPI FakeGetDeviceInfo(DISPLAYCONFIG_DEVICE_INFO_HEADER* header) {
    described = header->id;
    const Monitor& monitor = current->monitors.at(described);
    if (header->type == DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME) {
        Write(reinterpret_cast<DISPLAYCONFIG_SOURCE_DEVICE_NAME*>(header)->viewGdiDeviceName,
              monitor.source);
    } else {
        auto* const target = reinterpret_cast<DISPLAYCONFIG_TARGET_DEVICE_NAME*>(header);
        Write(target->monitorFriendlyDeviceName, monitor.name);
        Write(target->monitorDevicePath, monitor.path);
    }
    return ERROR_SUCCESS;
}

LSTATUS WINAPI FakeOpenKey(HKEY, const char*, DWORD, REGSAM, HKEY* key) {
    if (current->keyFails) {
        return ERROR_FILE_NOT_FOUND;
    }
    ++openKeys;
    *key = reinterpret_cast<HKEY>(std::uintptr_t{0x77});
    return ERROR_SUCCESS;
}

LSTATUS WINAPI FakeQueryValue(HKEY, const char*, DWORD*, DWORD*, BYTE* data, DWORD* size) {
    const std::string& edid = current->monitors.at(described).edid;
    if (data != nullptr && current->secondReadFails) {
        return ERROR_FILE_NOT_FOUND;
    }
    if (data != nullptr) {
        std::memcpy(data, edid.data(), std::min<std::size_t>(*size, edid.size()));
    }
    *size = static_cast<DWORD>(edid.size());
    return ERROR_SUCCESS;
}

LSTATUS WINAPI FakeCloseKey(HKEY) {
    --openKeys;
    return ERROR_SUCCESS;
}

BOOL WINAPI FakeEnumDisplaySettings(const wchar_t*, DWORD, DEVMODEW* mode) {
    const Monitor& monitor = current->monitors.at(described);
    mode->dmPelsWidth = monitor.width;
    mode->dmBitsPerPel = monitor.bitsPerPixel;
    return !current->modeFails;
}

void InstallFakes() {
    static simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    const auto redirect = [](const char* name, auto* fake) {
        imports.Redirect(name, reinterpret_cast<void*>(fake));
    };
    redirect("GetDisplayConfigBufferSizes", FakeBufferSizes);
    redirect("QueryDisplayConfig", FakeQueryDisplayConfig);
    redirect("DisplayConfigGetDeviceInfo", FakeGetDeviceInfo);
    redirect("EnumDisplaySettingsW", FakeEnumDisplaySettings);
    redirect("RegOpenKeyExA", FakeOpenKey);
    redirect("RegQueryValueExA", FakeQueryValue);
    redirect("RegCloseKey", FakeCloseKey);
}

std::wstring UpToNul(const std::wstring& text) { return text.substr(0, text.find(L'\0')); }

bool IsLetterCode(unsigned code) { return code >= 1 && code <= 26; }

bool IsDescribed(const Monitor& monitor) {
    const std::wstring path = UpToNul(monitor.path);
    const std::size_t begin = path.find(L"DISPLAY");
    const bool hasKey =
        begin != std::wstring::npos &&
        std::count(path.begin() + static_cast<std::ptrdiff_t>(begin), path.end(), L'#') >= 3;
    const unsigned code = static_cast<unsigned char>(monitor.edid[8]) * 256u +
                          static_cast<unsigned char>(monitor.edid[9]);
    return hasKey && !current->keyFails && !current->secondReadFails && !current->modeFails &&
           IsLetterCode(code & 31) && IsLetterCode(code >> 5 & 31) && IsLetterCode(code >> 10 & 31);
}

void CheckMonitor(const DisplayInfo& info, const Monitor& monitor) {
    RequireSame(info.sourceName, UpToNul(monitor.source), "the source ends with its field");
    RequireSame(info.monitorName, UpToNul(monitor.name), "the name ends with its field");
    RequireSame(info.monitorDevicePath, UpToNul(monitor.path), "the path ends with its field");
    RequireSame(info.edidHex.size(), monitor.edid.size() * 2, "the whole EDID is read");
    for (std::size_t digit = kMaskBegin; digit < std::min(kMaskEnd, info.edidHex.size()); ++digit) {
        RequireSame(info.edidHex[digit], L'0', "bytes 12 and 13 are blanked");
    }
    RequireSame(info.width, monitor.width & 0xFFFF, "the width's low half is kept");
    RequireSame(info.colorDepth, monitor.bitsPerPixel >> 2 & 0xFFFF,
                "the depth is a quarter of the bits");
}

void CheckDisplays(const Displays& displays) {
    static std::once_flag installed;
    std::call_once(installed, InstallFakes);
    current = &displays;
    openKeys = 0;
    std::vector<DisplayInfo> infos;
    const bool all = DeviceReporter::GetDisplayInfo(infos);
    const auto firstBad =
        std::find_if_not(displays.monitors.begin(), displays.monitors.end(), IsDescribed);
    RequireSame(all, firstBad == displays.monitors.end(), "one bad monitor ends the query");
    RequireSame(infos.size(), static_cast<std::size_t>(firstBad - displays.monitors.begin()),
                "the monitors before a bad one are told");
    for (std::size_t i = 0; i < infos.size(); ++i) {
        CheckMonitor(infos[i], displays.monitors[i]);
        RequireSame(infos[i].isFirstPath, i == 0, "the first path is marked");
        RequireSame(infos[i].displayMode, infos[0].displayMode, "all have the same topology");
    }
    RequireSame(openKeys, 0, "every key is closed");
}

TEST(DisplayFuzz, DescribesMonitorsUpToTheFirstBadOne) {
    fuzz::TryInputs("display configurations", 200000, MakeDisplays, CheckDisplays);
}

}  // namespace
