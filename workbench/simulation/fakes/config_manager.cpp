#include "simulation/fakes/config_manager.h"

#include <windows.h>
// windows.h has to come first.
#include <cfgmgr32.h>

#include "simulation/fake_call.h"
#include "simulation/fakes/device_nodes.h"

namespace simulation {
namespace {

CONFIGRET WINAPI FakeCM_Get_DevNode_Status(ULONG* status, ULONG* problem, DEVINST node,
                                           ULONG flags) {
    FakeCall call("CM_Get_DevNode_Status");
    World& world = call.world();
    const auto lock = world.Lock();
    const std::wstring instanceId = InstanceIdOf(world, node);
    call.Argument("node", node);
    call.Argument("device", instanceId.c_str());
    call.Argument("flags", flags);
    if (call.PlannedFault()) {
        return call.FailsWithStatus<CONFIGRET>();
    }
    if (status == nullptr || problem == nullptr) {
        return call.ReturnsStatus<CONFIGRET>(CR_INVALID_POINTER);
    }
    if (flags != 0) {
        return call.ReturnsStatus<CONFIGRET>(CR_INVALID_FLAG);
    }
    if (instanceId.empty()) {
        return call.ReturnsStatus<CONFIGRET>(CR_INVALID_DEVNODE);
    }
    const Device* const device = FindDevice(world.machine, instanceId);
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
    redirection.RedirectIfImported<decltype(::CM_Get_DevNode_Status)>("CM_Get_DevNode_Status",
                                                                      FakeCM_Get_DevNode_Status);
}

}  // namespace simulation
