#include "simulation/fakes/config_manager.h"

#include <gmock/gmock.h>
// windows.h has to come first.
#include <cfgmgr32.h>
#include <setupapi.h>

#include "sample_machine.h"
#include "simulation/call_text.h"
#include "simulation/fakes/setup_api.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

class ConfigManagerFakes : public ::testing::Test {
protected:
    /// Nodes are numbered by SetupAPI.
    DEVINST NodeAt(DWORD index) {
        const HDEVINFO set = SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES);
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof(device);
        EXPECT_TRUE(SetupDiEnumDeviceInfo(set, index, &device));
        SetupDiDestroyDeviceInfoList(set);
        return device.DevInst;
    }

    SimulatedMachine machine{GetModuleHandleW(nullptr),
                             KeyboardMachine(),
                             {InstallConfigManagerFakes, InstallSetupApiFakes}};
    World& world = machine.world();
    ULONG status = 0;
    ULONG problem = 99;
};

TEST_F(ConfigManagerFakes, GiveTheStatusOfTheNodeThatSetupApiNames) {
    const DEVINST removable = NodeAt(0);
    EXPECT_EQ(NodeAt(0), removable);
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, removable, 0), DWORD{CR_SUCCESS});
    EXPECT_EQ(status & DN_REMOVABLE, static_cast<ULONG>(DN_REMOVABLE));
    EXPECT_EQ(problem, 0u);
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, NodeAt(1), 0), DWORD{CR_SUCCESS});
    EXPECT_EQ(status & DN_REMOVABLE, 0u);
    const JournalEntry entry = world.journal.Calls("CM_Get_DevNode_Status").at(0);
    EXPECT_EQ(entry["device"], ToUtf8(kUsbId));
    EXPECT_EQ(entry["flags"], "0");
    EXPECT_EQ(entry.error, DWORD{CR_SUCCESS});
}

TEST_F(ConfigManagerFakes, SayWhyThereIsNoStatus) {
    const DEVINST node = NodeAt(0);
    EXPECT_EQ(CM_Get_DevNode_Status(nullptr, &problem, node, 0), DWORD{CR_INVALID_POINTER});
    EXPECT_EQ(CM_Get_DevNode_Status(&status, nullptr, node, 0), DWORD{CR_INVALID_POINTER});
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, node, 1), DWORD{CR_INVALID_FLAG});
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, 4711, 0), DWORD{CR_INVALID_DEVNODE});
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, NodeAt(2), 0), DWORD{CR_NO_SUCH_DEVNODE});
    world.Unplug(kUsbId);
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, node, 0), DWORD{CR_NO_SUCH_DEVNODE});
}

TEST_F(ConfigManagerFakes, FailAsTheMachineSaysOrAsPlanned) {
    const DEVINST node = NodeAt(1);
    world.Change([](Machine& changed) { changed.devices[1].statusResult = CR_REGISTRY_ERROR; });
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, node, 0), DWORD{CR_REGISTRY_ERROR});
    world.faults.FailCall("CM_Get_DevNode_Status", 1, CR_FAILURE);
    EXPECT_EQ(CM_Get_DevNode_Status(&status, &problem, node, 0), DWORD{CR_FAILURE});
    EXPECT_EQ(problem, 99u);
}

}  // namespace
}  // namespace simulation
