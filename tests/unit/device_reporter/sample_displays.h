// Monitors for simulated machines.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "simulation/machine.h"

namespace device_tests {

/// Bytes 1, 2, 3, ... with the manufacturer "DEL" at its place.
inline std::vector<BYTE> SampleEdid(std::size_t size) {
    std::vector<BYTE> edid;
    for (std::size_t i = 0; i < size; ++i) {
        edid.push_back(static_cast<BYTE>(i + 1));
    }
    if (size > 8) edid[8] = 0x10;
    if (size > 9) edid[9] = 0xAC;
    return edid;
}

/// A path from a source to a monitor with a mode and an EDID of 128 bytes. `number` begins at 1.
inline simulation::DisplayPath SampleDisplay(unsigned number) {
    const std::wstring text = std::to_wstring(number);
    simulation::DisplayPath path;
    path.sourceAdapter = {0x1000, 1};
    path.targetAdapter = path.sourceAdapter;
    path.sourceId = number - 1;
    path.targetId = 4350 + number;
    path.gdiName = L"\\\\.\\DISPLAY" + text;
    path.friendlyName = L"Monitor " + text;
    path.devicePath = L"\\\\?\\DISPLAY#DEL000" + text + L"#5&2a3b4c&0&UID435" + text +
                      L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}";
    path.edid = SampleEdid(128);
    return path;
}

}  // namespace device_tests
