// The machine that the tests of the fakes ask.
#pragma once

#include "simulation/machine.h"

namespace simulation {

inline constexpr GUID kUnknownClass{
    0x11111111, 0x2222, 0x3333, {0x44, 0x44, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}};

inline constexpr wchar_t kHidPath[] =
    L"\\\\?\\hid#vid_1a2b&pid_0001&mi_00#7&22&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";
inline constexpr char kMonitorKey[] =
    "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\HEL1234\\5&2a3b4c&0&UID4352\\Device Parameters";

/// A HID device that can be opened and a monitor with an EDID; "DESK\ann" is logged on. There is no
/// printer.
Machine SampleMachine();

}  // namespace simulation
