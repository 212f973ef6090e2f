#include <windows.h>
#include <cfgmgr32.h>

#include "simulation/fake_call.h"
#include "simulation/fakes/device_sets.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

CONFIGRET WINAPI FakeCM_Get_DevNode_Status(ULONG* status, ULONG* problem, DEVINST node,
                                           ULONG flags) {
    FakeCall call("CM_Get_DevNode_Status");
    World& world = call.world();
    const auto lock = world.Lock();
    const std::wstring instanceId = InstanceIdOf(world, node);
    call.Arguments({{"node", node}, {"device", instanceId.c_str()}, {"flags", flags}});
    if (const auto error =
            call.Refused({{status == nullptr || problem == nullptr, CR_INVALID_POINTER},
                          {flags != 0, CR_INVALID_FLAG},
                          {instanceId.empty(), CR_INVALID_DEVNODE}})) {
        return call.ReturnsStatus(static_cast<CONFIGRET>(*error));
    }
    const Device* const device = FindDevice(world.machine, instanceId, node - 1);
    if (device == nullptr || !device->present) {
        return call.ReturnsStatus<CONFIGRET>(CR_NO_SUCH_DEVNODE);
    }
    if (device->statusResult != CR_SUCCESS) {
        return call.ReturnsStatus(device->statusResult);
    }
    *status = device->status;
    *problem = device->problem;
    return call.ReturnsStatus<CONFIGRET>(CR_SUCCESS);
}

}  // namespace

void InstallConfigManagerFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::CM_Get_DevNode_Status)>("CM_Get_DevNode_Status",
                                                   FakeCM_Get_DevNode_Status),
    });
}

}  // namespace simulation
