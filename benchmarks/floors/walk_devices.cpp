#include <windows.h>
#include <cfgmgr32.h>
#include <setupapi.h>

#include "floors/plain_calls.h"
#include "simulation/well_known.h"

namespace benchmarks {
namespace {

constexpr std::size_t kMaxDevices = 500;

}  // namespace

std::size_t WalkDevices() {
    static BYTE buffer[4096];
    HDEVINFO const set =
        SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(device);
    DWORD index = 0;
    for (; index < kMaxDevices && SetupDiEnumDeviceInfo(set, index, &device); ++index) {
        wchar_t id[260];
        SetupDiGetDeviceInstanceIdW(set, &device, id, 260, nullptr);
        ULONG status = 0;
        ULONG problem = 0;
        CM_Get_DevNode_Status(&status, &problem, device.DevInst, 0);
        for (const DEVPROPKEY& key :
             {simulation::kParentKey, simulation::kClassKey, simulation::kManufacturerKey,
              simulation::kDeviceDescKey, simulation::kFriendlyNameKey, simulation::kNameKey,
              simulation::kContainerIdKey}) {
            DEVPROPTYPE type = 0;
            SetupDiGetDevicePropertyW(set, &device, &key, &type, buffer, sizeof(buffer), nullptr,
                                      0);
        }
    }
    SetupDiDestroyDeviceInfoList(set);
    return index;
}

}  // namespace benchmarks
