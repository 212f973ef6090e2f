// The monitors that are active now.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace DeviceReporter {

/// One active display path.
struct DisplayInfo {
    bool isFirstPath = false;
    std::wstring sourceName;         ///< GDI device name of the source.
    std::wstring monitorName;        ///< Friendly name.
    std::wstring monitorDevicePath;  ///< Device interface path.
    std::wstring edidRegPath;        ///< Below HKEY_LOCAL_MACHINE.
    std::wstring edidHex;            ///< Serial number partly blanked.
    std::wstring edidVendor;         ///< Three letters and "#".
    std::uint16_t width = 0;         ///< Pixels.
    std::uint16_t height = 0;        ///< Pixels.
    std::uint16_t refreshRate = 0;   ///< Hertz.
    std::uint16_t logPixels = 0;     ///< Pixels per inch.
    std::uint16_t colorDepth = 0;    ///< A quarter of the bits per pixel.
    std::wstring displayMode;        ///< Topology word, the same for all paths.
};

/// Appends one entry per active path, in the order of the display configuration. False, with a log
/// line, when the configuration cannot be queried or at the first path that cannot be described;
/// what was appended by then stays. An EDID that is too short raises std::out_of_range (see
/// PushEdidToData). Monitor thread only.
bool GetDisplayInfo(std::vector<DisplayInfo>& displays);

/// Word for a topology; an unknown one is logged.
std::wstring GetDisplayMode(DISPLAYCONFIG_TOPOLOGY_ID topologyId);

/// Fills the entry of one path except for `displayMode`. False, with a log line, on failure.
bool GetDisplayInfoFromPathInfo(const DISPLAYCONFIG_PATH_INFO& path, DisplayInfo& info,
                                bool isFirstPath);

}  // namespace DeviceReporter
