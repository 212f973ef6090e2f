#include "device_reporter/hid_info.h"

// Not every SDK's header declares C linkage by itself.
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <cstddef>
#include <memory>

#include "report/log_line.h"
#include "util/fixed_text.h"
#include "util/scoped_file.h"

namespace DeviceReporter {

namespace {

// Kept: both functions of this file log under this name.
constexpr char kUpdateHidDeviceInfoFunction[] = "DeviceReporter::UpdateHidDeviceInfo";

constexpr std::size_t kHidTextCapacity = 260;  ///< In characters.

static_assert(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) == 8);

struct GlobalMemoryDeleter {
    void operator()(void* block) const noexcept { GlobalFree(block); }
};

}  // namespace

bool UpdateHidDeviceInfo(HDEVINFO devices, SP_DEVICE_INTERFACE_DATA& interfaceData,
                         DeviceInfo& record) {
    DWORD requiredSize = 0;
    if (!SetupDiGetDeviceInterfaceDetailW(devices, &interfaceData,
                                          /*DeviceInterfaceDetailData=*/nullptr,
                                          /*DeviceInterfaceDetailDataSize=*/0, &requiredSize,
                                          /*DeviceInfoData=*/nullptr)) {
        const DWORD error = GetLastError();
        if (error != ERROR_INSUFFICIENT_BUFFER) {
            WriteLogLine(LOG_LEVEL_NORMAL, kUpdateHidDeviceInfoFunction,
                         "fail to get device interface detail, lastError = ", error);
            return false;
        }
    }
    // Never less than the part that is written below, whatever size was asked for.
    const std::unique_ptr<void, GlobalMemoryDeleter> block(GlobalAlloc(
        GMEM_ZEROINIT, std::max<SIZE_T>(requiredSize, sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W))));
    if (!block) {
        WriteLogLine(LOG_LEVEL_NORMAL, kUpdateHidDeviceInfoFunction, "fail to alloc device data");
        return false;
    }
    auto* const detail = static_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block.get());
    detail->cbSize = sizeof(*detail);
    if (SetupDiGetDeviceInterfaceDetailW(devices, &interfaceData, detail, requiredSize,
                                         /*RequiredSize=*/nullptr, /*DeviceInfoData=*/nullptr)) {
        // The result is dropped: a device that does not open keeps the texts of its properties.
        ReadHidStrings(detail->DevicePath, record);
    }
    return true;
}

bool ReadHidStrings(const wchar_t* devicePath, DeviceInfo& record) {
    if (devicePath == nullptr) {
        WriteLogLine(LOG_LEVEL_NORMAL, kUpdateHidDeviceInfoFunction, "devicePath is null");
        return false;
    }
    const ScopedFile device(CreateFileW(devicePath, /*dwDesiredAccess=*/0,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        /*lpSecurityAttributes=*/nullptr, OPEN_EXISTING,
                                        FILE_FLAG_OVERLAPPED, /*hTemplateFile=*/nullptr));
    if (!device) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_NORMAL, kUpdateHidDeviceInfoFunction,
                     "create file failed, lastError = ", error);
        return false;
    }
    // Kept, so that the reported texts stay as they are: both queries share one buffer, cleared
    // once, and are offered half of it. A USB device's string, 126 characters at most, fits there.
    // Where another bus allows a longer one, the HID library decides what the query gives.
    wchar_t buffer[kHidTextCapacity] = {};
    constexpr ULONG kOfferedBytes = sizeof(buffer) / 2;
    if (HidD_GetProductString(device.Get(), buffer, kOfferedBytes)) {
        record.name = TextOf(buffer);
    }
    if (HidD_GetManufacturerString(device.Get(), buffer, kOfferedBytes)) {
        record.manufacturer = TextOf(buffer);
    }
    return true;
}

}  // namespace DeviceReporter
