// Each way in which a monitor, and with it the whole display query, fails.
#include <windows.h>

#include <string>

#include "unit/device_reporter/display_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::SampleDisplay;

class DisplayFailure : public device_tests::DisplayTest {};

TEST_F(DisplayFailure, OfTheBufferSizes) {
    Fail("GetDisplayConfigBufferSizes", 1, ERROR_NOT_SUPPORTED);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("GetDisplayConfigBufferSizes failed!", "GetDisplayInfo")));
    EXPECT_THAT(CalledFunctions(), ElementsAre("GetDisplayConfigBufferSizes"));
}

TEST_F(DisplayFailure, OfTheQuery) {
    Fail("QueryDisplayConfig", 1, ERROR_GEN_FAILURE);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("QueryDisplayConfig failed!", "GetDisplayInfo")));
    EXPECT_EQ(world.journal.Count("DisplayConfigGetDeviceInfo"), 0u);
}

TEST_F(DisplayFailure, OfAQueryThatFindsMorePathsThanWereCountedIsNotRetried) {
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2)};
    Fail("GetDisplayConfigBufferSizes", 1, 1, simulation::FaultVariant::ShortSize);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("QueryDisplayConfig failed!", "GetDisplayInfo")));
    EXPECT_THAT(CalledFunctions(),
                ElementsAre("GetDisplayConfigBufferSizes", "QueryDisplayConfig"));
}

TEST_F(DisplayFailure, OfAMachineWithoutMonitors) {
    machine.display.paths.clear();
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("QueryDisplayConfig failed!", "GetDisplayInfo")));
}

TEST_F(DisplayFailure, OfTheSourceName) {
    Fail("DisplayConfigGetDeviceInfo", 1, ERROR_GEN_FAILURE);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("Display get source device name failed!",
                                        "GetDisplaySourceDeviceName")));
    EXPECT_EQ(world.journal.Count("DisplayConfigGetDeviceInfo"), 1u);
}

TEST_F(DisplayFailure, OfTheTargetNameIsLoggedWithItsResult) {
    Fail("DisplayConfigGetDeviceInfo", 2, ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("Display get target device name failed! ret = 87",
                                        "GetDisplayTargetDeviceName")));
    EXPECT_EQ(world.journal.Count("RegOpenKeyExA"), 0u);
}

TEST_F(DisplayFailure, OfTheTargetNameIsLoggedWithASignedResult) {
    Fail("DisplayConfigGetDeviceInfo", 2, 0xC00000BB);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("Display get target device name failed! ret = -1073741637",
                                        "GetDisplayTargetDeviceName")));
}

TEST_F(DisplayFailure, OfADevicePathThatIsNoDisplays) {
    machine.display.paths[0].devicePath = L"\\\\?\\MONITOR#DEL0001#5&1#{0}";
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("devicePath is error!", "GetEditRegPath"),
                                   Line("Get EditRegPath failed", "GetDisplayInfoFromPathInfo")));
    EXPECT_EQ(world.journal.Count("RegOpenKeyExA"), 0u);
}

TEST_F(DisplayFailure, OfADevicePathWithTooFewPieces) {
    machine.display.paths[0].devicePath = L"\\\\?\\DISPLAY#DEL0001#5&1";
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("devicePath format is error!", "GetEditRegPath"),
                                   Line("Get EditRegPath failed", "GetDisplayInfoFromPathInfo")));
}

TEST_F(DisplayFailure, OfTheEdidIsNotLoggedAgain) {
    machine.display.paths[0].edid.reset();
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(),
                ElementsAre(Line("RegQuery max Edid value length Failed, maxValueLength is 0",
                                 "GetValueFromReg"),
                            Line("GetValueFromReg failed!", "GetDataFromReg")));
    EXPECT_EQ(world.journal.Count("EnumDisplaySettingsW"), 0u);
}

TEST_F(DisplayFailure, OfTheMode) {
    machine.display.paths[0].mode.reset();
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("EnumDisplaySettings failed!", "GetDevModeInfo")));
}

TEST_F(DisplayFailure, OfOnePathEndsTheQueryAndKeepsTheRecordsBefore) {
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2), SampleDisplay(3)};
    machine.display.paths[1].mode.reset();
    EXPECT_FALSE(Get());
    ASSERT_EQ(displays.size(), 1u);
    EXPECT_EQ(displays[0].monitorName, L"Monitor 1");
    EXPECT_EQ(world.journal.Count("DisplayConfigGetDeviceInfo"), 4u);
    EXPECT_THAT(Log(), ElementsAre(Line("EnumDisplaySettings failed!", "GetDevModeInfo")));
}

TEST_F(DisplayFailure, OfASinglePathLeavesWhetherItIsTheFirst) {
    Fail("DisplayConfigGetDeviceInfo", 1, ERROR_GEN_FAILURE);
    Fail("DisplayConfigGetDeviceInfo", 2, ERROR_GEN_FAILURE);
    const DISPLAYCONFIG_PATH_INFO path{};
    DeviceReporter::DisplayInfo display;
    display.displayMode = L"EXTEND";
    EXPECT_FALSE(DeviceReporter::GetDisplayInfoFromPathInfo(path, display, true));
    EXPECT_TRUE(display.isFirstPath);
    EXPECT_FALSE(DeviceReporter::GetDisplayInfoFromPathInfo(path, display, false));
    EXPECT_FALSE(display.isFirstPath);
    EXPECT_EQ(display.displayMode, L"EXTEND");
}

}  // namespace
