#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

decltype(::RegisterDeviceNotificationW)* realRegisterDeviceNotificationW = nullptr;
decltype(::UnregisterDeviceNotification)* realUnregisterDeviceNotification = nullptr;

HDEVNOTIFY WINAPI FakeRegisterDeviceNotificationW(HANDLE recipient, void* filter, DWORD flags) {
    FakeCall call("RegisterDeviceNotificationW", Arg{"recipient", recipient});
    const auto* header = static_cast<const DEV_BROADCAST_HDR*>(filter);
    call.Arguments({{"filterSize", header->dbch_size}, {"deviceType", header->dbch_devicetype}});
    if (header->dbch_devicetype == DBT_DEVTYP_DEVICEINTERFACE) {
        call.Argument("interfaceClass",
                      static_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(filter)->dbcc_classguid);
    }
    call.Argument("flags", flags);
    const HDEVNOTIFY notification = call.FailsOrPassesTo(
        HDEVNOTIFY{}, realRegisterDeviceNotificationW, recipient, filter, flags);
    if (notification != nullptr) {
        call.world().ledger.Adopt(ResourceKind::Notification, notification);
    }
    return notification;
}

BOOL WINAPI FakeUnregisterDeviceNotification(HDEVNOTIFY notification) {
    FakeCall call("UnregisterDeviceNotification", Arg{"notification", notification});
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    call.world().ledger.Release(ResourceKind::Notification, notification);
    return call.PassTo(realUnregisterDeviceNotification, notification);
}

}  // namespace

void InstallDeviceNotificationFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"RegisterDeviceNotificationW", FakeRegisterDeviceNotificationW,
         &realRegisterDeviceNotificationW},
        {"UnregisterDeviceNotification", FakeUnregisterDeviceNotification,
         &realUnregisterDeviceNotification},
    });
}

}  // namespace simulation
