// Owners for the handles of device enumeration, printers, files and registry keys.
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

struct FileTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type file) noexcept { CloseHandle(file); }
};
using ScopedFile = ScopedHandle<FileTraits>;

struct PrinterTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type printer) noexcept { ClosePrinter(printer); }
};
using ScopedPrinter = ScopedHandle<PrinterTraits>;

struct RegistryKeyTraits {
    using Type = HKEY;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type key) noexcept { RegCloseKey(key); }
};
using ScopedRegistryKey = ScopedHandle<RegistryKeyTraits>;

}  // namespace DeviceReporter
