// Owners for the handles of device enumeration and printers.
#pragma once

#include <windows.h>
#include <setupapi.h>
#include <winspool.h>

#include "util/scoped_handle.h"

namespace DeviceReporter {

struct DeviceInfoSetTraits {
    using Type = HDEVINFO;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type devices) noexcept { SetupDiDestroyDeviceInfoList(devices); }
};
using ScopedDeviceInfoSet = ScopedHandle<DeviceInfoSetTraits>;

struct PrinterTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type printer) noexcept { ClosePrinter(printer); }
};
using ScopedPrinter = ScopedHandle<PrinterTraits>;

}  // namespace DeviceReporter
