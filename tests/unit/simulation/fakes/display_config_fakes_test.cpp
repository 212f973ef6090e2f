#include "simulation/fakes/display_config.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "sample_machine.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

class DisplayConfigFakes : public ::testing::Test {
protected:
    LONG Query() {
        return QueryDisplayConfig(QDC_DATABASE_CURRENT, &pathCount, paths, &modeCount, modes,
                                  &topology);
    }

    template <class Request>
    Request Ask(DISPLAYCONFIG_DEVICE_INFO_TYPE type, LUID adapter, UINT32 id, LONG expected) {
        Request request{};
        request.header.type = type;
        request.header.size = sizeof(request);
        request.header.adapterId = adapter;
        request.header.id = id;
        EXPECT_EQ(DisplayConfigGetDeviceInfo(&request.header), expected);
        return request;
    }

    DISPLAYCONFIG_SOURCE_DEVICE_NAME AskSource(LUID adapter, UINT32 id, LONG expected) {
        return Ask<DISPLAYCONFIG_SOURCE_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME,
                                                     adapter, id, expected);
    }

    DISPLAYCONFIG_TARGET_DEVICE_NAME AskTarget(LUID adapter, UINT32 id, LONG expected) {
        return Ask<DISPLAYCONFIG_TARGET_DEVICE_NAME>(DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME,
                                                     adapter, id, expected);
    }

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), TwoMonitorMachine(), {InstallDisplayConfigFakes}};
    World& world = machine.world();
    UINT32 pathCount = 4;
    UINT32 modeCount = 8;
    DISPLAYCONFIG_PATH_INFO paths[4]{};
    DISPLAYCONFIG_MODE_INFO modes[8]{};
    DISPLAYCONFIG_TOPOLOGY_ID topology = DISPLAYCONFIG_TOPOLOGY_INTERNAL;
};

TEST_F(DisplayConfigFakes, GiveCountsAndThenPaths) {
    EXPECT_EQ(GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount), 0);
    EXPECT_EQ(pathCount, 2u);
    EXPECT_EQ(modeCount, 4u);
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(topology, DISPLAYCONFIG_TOPOLOGY_EXTEND);
    EXPECT_EQ(paths[1].sourceInfo.adapterId.LowPart, 0x1000u);
    EXPECT_EQ(paths[1].sourceInfo.id, 1u);
    EXPECT_EQ(paths[1].targetInfo.adapterId.LowPart, 0x2000u);
    EXPECT_EQ(paths[1].targetInfo.id, 4353u);
    EXPECT_EQ(paths[0].flags, static_cast<UINT32>(DISPLAYCONFIG_PATH_ACTIVE));
    const DISPLAYCONFIG_MODE_INFO& source = modes[paths[0].sourceInfo.modeInfoIdx];
    EXPECT_EQ(source.infoType, DISPLAYCONFIG_MODE_INFO_TYPE_SOURCE);
    EXPECT_EQ(source.sourceMode.width, 2560u);
    EXPECT_EQ(modes[paths[1].targetInfo.modeInfoIdx].infoType, DISPLAYCONFIG_MODE_INFO_TYPE_TARGET);
    EXPECT_EQ(modes[paths[1].targetInfo.modeInfoIdx].id, 4353u);
    EXPECT_EQ(world.journal.Entries().at(0)["flags"], "2");
    const JournalEntry entry = world.journal.Calls("QueryDisplayConfig").at(0);
    EXPECT_EQ(entry["flags"], "4");
    EXPECT_EQ(entry["pathCount"], "2");
    EXPECT_EQ(entry["modeCount"], "4");
    EXPECT_NE(entry["topology"], "null");
}

TEST_F(DisplayConfigFakes, SayHowManyPathsThereReallyAre) {
    ASSERT_EQ(Query(), 0);
    EXPECT_EQ(pathCount, 2u);
    EXPECT_EQ(modeCount, 4u);
    pathCount = 1;
    EXPECT_EQ(Query(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(pathCount, 1u);
}

TEST_F(DisplayConfigFakes, RefuseAMachineWithoutDisplays) {
    world.Change([](Machine& changed) { changed.display.paths.clear(); });
    EXPECT_EQ(GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount), 0);
    EXPECT_EQ(pathCount, 0u);
    EXPECT_EQ(Query(), ERROR_INVALID_PARAMETER);
}

TEST_F(DisplayConfigFakes, NameSourcesAndTargets) {
    EXPECT_STREQ(AskSource({0x1000, 0}, 1, 0).viewGdiDeviceName, L"\\\\.\\DISPLAY2");
    const DISPLAYCONFIG_TARGET_DEVICE_NAME target = AskTarget({0x1000, 0}, 4352, 0);
    EXPECT_STREQ(target.monitorFriendlyDeviceName, L"Helio 27");
    EXPECT_STREQ(target.monitorDevicePath, L"\\\\?\\DISPLAY#HEL1234#5&2a3b4c&0&UID4352#{monitor}");
    const JournalEntry entry = world.journal.Entries().at(1);
    EXPECT_EQ(entry["type"], "2");
    EXPECT_EQ(entry["size"], "420");
    EXPECT_EQ(entry["adapter"], "0:4096");
    EXPECT_EQ(entry["id"], "4352");
}

TEST_F(DisplayConfigFakes, FindATargetOnlyOnItsOwnAdapter) {
    AskTarget({0x1000, 0}, 4353, ERROR_GEN_FAILURE);
    AskTarget({0x2000, 0}, 4353, 0);
    AskSource({0x2000, 0}, 1, ERROR_GEN_FAILURE);
    AskSource({0x1000, 0}, 7, ERROR_GEN_FAILURE);
}

TEST_F(DisplayConfigFakes, FailAsPlanned) {
    world.faults.FailCall("GetDisplayConfigBufferSizes", 1, 50);
    EXPECT_EQ(GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount), 50);
    world.faults.FailCall("GetDisplayConfigBufferSizes", 1, 1, FaultVariant::ShortSize);
    EXPECT_EQ(GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount), 0);
    EXPECT_EQ(pathCount, 1u);
    EXPECT_EQ(Query(), ERROR_INSUFFICIENT_BUFFER);
    world.faults.FailCall("QueryDisplayConfig", 1, 31);
    EXPECT_EQ(Query(), 31);
    world.faults.FailCall("QueryDisplayConfig", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_EQ(Query(), 0);
    EXPECT_EQ(pathCount, 0u);
    world.faults.FailCall("DisplayConfigGetDeviceInfo", 1, 5);
    AskSource({0x1000, 0}, 0, 5);
    world.faults.FailCall("DisplayConfigGetDeviceInfo", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_STREQ(AskSource({0x1000, 0}, 0, 0).viewGdiDeviceName, L"");
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
}  // namespace simulation
