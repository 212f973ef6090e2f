#include "support/real_devices.h"

#include <windows.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "device_reporter/scoped_device_handles.h"
#include "simulation/well_known.h"
#include "support/comes_true.h"
#include "util/scoped_file.h"

namespace test_support {
namespace {

bool CanBeOpened(HDEVINFO set, SP_DEVICE_INTERFACE_DATA& offered) {
    std::vector<BYTE> block(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) + 1000);
    auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block.data());
    detail->cbSize = sizeof(*detail);
    if (!SetupDiGetDeviceInterfaceDetailW(set, &offered, detail, static_cast<DWORD>(block.size()),
                                          nullptr, nullptr)) {
        return false;
    }
    const ScopedFile file(CreateFileW(detail->DevicePath, /*dwDesiredAccess=*/0,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
    return static_cast<bool>(file);
}

std::size_t CountOpenHidDevices() {
    const DeviceReporter::ScopedDeviceInfoSet set(SetupDiGetClassDevsW(
        &simulation::kHidInterface, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
    SP_DEVICE_INTERFACE_DATA offered{};
    offered.cbSize = sizeof(offered);
    std::size_t count = 0;
    for (DWORD index = 0; SetupDiEnumDeviceInterfaces(set.Get(), nullptr,
                                                      &simulation::kHidInterface, index, &offered);
         ++index) {
        count += CanBeOpened(set.Get(), offered) ? 1 : 0;
    }
    return count;
}

bool HasDisplay() {
    UINT32 paths = 0;
    UINT32 modes = 0;
    return GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &paths, &modes) == ERROR_SUCCESS &&
           paths > 0;
}

/// Empty when nothing is missing in the end.
std::string WhatIsMissing() {
    if (!ComesTrue([] { return CountOpenHidDevices() >= 2; })) {
        return "two HID devices that can be opened";
    }
    return ComesTrue(&HasDisplay) ? "" : "display";
}

}  // namespace

void WaitForRealDevices() {
    static const std::string missing = WhatIsMissing();
    if (!missing.empty()) {
        throw std::runtime_error("the system has no " + missing +
                                 " after a minute of waiting; remove the Wine prefix in the build "
                                 "folder and try again");
    }
}

}  // namespace test_support
