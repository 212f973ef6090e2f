// The machine that the tests of the fakes ask.
#pragma once

#include "simulation/machine.h"

namespace simulation {

inline constexpr GUID kKeyboardSetupClass{
    0x4D36E96B, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
inline constexpr GUID kUnknownClass{
    0x11111111, 0x2222, 0x3333, {0x44, 0x44, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}};

inline constexpr wchar_t kUsbId[] = L"USB\\VID_1A2B&PID_0001\\5&11&0&2";
inline constexpr wchar_t kHidId[] = L"HID\\VID_1A2B&PID_0001&MI_00\\7&22&0&0000";
inline constexpr wchar_t kAbsentId[] = L"USB\\VID_1A2B&PID_0009\\5&11&0&9";

inline constexpr wchar_t kHidPath[] =
    L"\\\\?\\hid#vid_1a2b&pid_0001&mi_00#7&22&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";
inline constexpr wchar_t kSilentHidPath[] =
    L"\\\\?\\hid#vid_1a2b&pid_0001&mi_00#7&22&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}\\kbd";

/// A removable keyboard: a USB device with a USB interface, and its HID child with two HID
/// interfaces, of which only the first can be opened, and a USB interface; then a USB device that
/// is not there any more.
Machine KeyboardMachine();

/// Two queues, "Office Printer 5" with a driver and "Broken" without one.
Machine PrinterMachine();

/// Two monitors in extend mode, the second on another adapter than its source.
Machine TwoMonitorMachine();

}  // namespace simulation
