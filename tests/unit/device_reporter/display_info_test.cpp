#include "device_reporter/display_info.h"

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using device_tests::SampleDisplay;
using DeviceReporter::DisplayInfo;

/// A machine with one monitor.
class DisplayInformation : public device_tests::MachineTest {
protected:
    DisplayInformation() { machine.display.paths = {SampleDisplay(1)}; }

    bool Get() { return DeviceReporter::GetDisplayInfo(displays); }

    /// A log line of one of the display functions.
    static std::string Line(const std::string& text, const std::string& function) {
        return "log 3 " + text + "(`anonymous-namespace'::" + function + ")";
    }

    std::vector<DeviceReporter::DisplayInfo> displays;
};

TEST(DisplayRecord, StartsEmpty) {
    const DisplayInfo empty;
    EXPECT_FALSE(empty.isFirstPath);
    for (const std::uint16_t number :
         {empty.width, empty.height, empty.refreshRate, empty.logPixels, empty.colorDepth}) {
        EXPECT_EQ(number, 0u);
    }
}

TEST_F(DisplayInformation, TellsAllAboutAMonitor) {
    machine.display.topology = 8;
    machine.display.paths[0].friendlyName = L"\u663E\u793A\u5668";
    machine.display.paths[0].mode = simulation::DisplayMode{2560, 1440, 144, 120, 32};
    EXPECT_TRUE(Get());
    ASSERT_EQ(displays.size(), 1u);
    const DisplayInfo& display = displays[0];
    EXPECT_TRUE(display.isFirstPath);
    EXPECT_EQ(display.sourceName, L"\\\\.\\DISPLAY1");
    EXPECT_EQ(display.monitorName, L"\u663E\u793A\u5668");
    EXPECT_EQ(display.monitorDevicePath,
              L"\\\\?\\DISPLAY#DEL0001#5&2a3b4c&0&UID4351#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}");
    EXPECT_EQ(display.edidRegPath,
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\DEL0001\\5&2a3b4c&0&UID4351"
              L"\\Device Parameters");
    EXPECT_EQ(display.edidHex.substr(0, 32), L"010203040506070810AC0B0C00000F10");
    EXPECT_EQ(display.edidHex.size(), 256u);
    EXPECT_EQ(display.edidVendor, L"DEL#");
    EXPECT_EQ(display.width, 2560u);
    EXPECT_EQ(display.height, 1440u);
    EXPECT_EQ(display.refreshRate, 144u);
    EXPECT_EQ(display.logPixels, 120u);
    EXPECT_EQ(display.colorDepth, 8u);
    EXPECT_EQ(display.displayMode, L"EXTERNAL");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DisplayInformation, HasOneRecordForEachPathOfWhichTheFirstIsMarked) {
    machine.display.topology = 4;
    machine.display.paths = {SampleDisplay(2), SampleDisplay(1), SampleDisplay(3)};
    EXPECT_TRUE(Get());
    ASSERT_EQ(displays.size(), 3u);
    EXPECT_EQ(displays[0].monitorName, L"Monitor 2");
    EXPECT_EQ(displays[1].monitorName, L"Monitor 1");
    EXPECT_EQ(displays[2].monitorName, L"Monitor 3");
    EXPECT_TRUE(displays[0].isFirstPath);
    EXPECT_FALSE(displays[1].isFirstPath);
    EXPECT_FALSE(displays[2].isFirstPath);
    for (const DisplayInfo& display : displays) {
        EXPECT_EQ(display.displayMode, L"EXTEND");
    }
}

TEST_F(DisplayInformation, IsAppendedUpToTheFirstPathThatFails) {
    displays.emplace_back();
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2), SampleDisplay(3)};
    machine.display.paths[1].mode.reset();
    EXPECT_FALSE(Get());
    ASSERT_EQ(displays.size(), 2u);
    EXPECT_EQ(displays[0].monitorName, L"");
    EXPECT_EQ(displays[1].monitorName, L"Monitor 1");
    EXPECT_EQ(world.journal.Count("DisplayConfigGetDeviceInfo"), 4u);
    EXPECT_THAT(Log(), ElementsAre(Line("EnumDisplaySettings failed!", "GetDevModeInfo")));
}

TEST_F(DisplayInformation, HasTheWordOfOneTopologyInEveryRecord) {
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2)};
    for (const auto& [topology, word] :
         {std::pair(1u, L"INTERNAL"), std::pair(2u, L"CLONE"), std::pair(4u, L"EXTEND"),
          std::pair(8u, L"EXTERNAL"), std::pair(16u, L"UNKNOWN")}) {
        displays.clear();
        machine.display.topology = topology;
        EXPECT_TRUE(Get());
        ASSERT_EQ(displays.size(), 2u);
        EXPECT_EQ(displays[0].displayMode, word);
        EXPECT_EQ(displays[1].displayMode, word);
    }
    EXPECT_THAT(Log(), ElementsAre(Line("GetUnknownDisplayMode:16", "GetDisplayMode")));
}

TEST_F(DisplayInformation, LogsEveryOtherTopologyAsAnUnsignedNumber) {
    for (unsigned topology : {0u, 3u, 5u, 6u, 7u, 9u, 15u, 17u, 0xFFFFFFFFu}) {
        timeline.Clear();
        EXPECT_EQ(DeviceReporter::GetDisplayMode(static_cast<DISPLAYCONFIG_TOPOLOGY_ID>(topology)),
                  L"UNKNOWN");
        EXPECT_THAT(Log(), ElementsAre(Line("GetUnknownDisplayMode:" + std::to_string(topology),
                                            "GetDisplayMode")));
    }
}

TEST_F(DisplayInformation, KeepsTheLow16BitsOfTheModesNumbers) {
    machine.display.paths[0].mode = simulation::DisplayMode{65'537, 0x12345, 70'000, 96, 32};
    EXPECT_TRUE(Get());
    EXPECT_EQ(displays[0].width, 1u);
    EXPECT_EQ(displays[0].height, 0x2345u);
    EXPECT_EQ(displays[0].refreshRate, 4464u);
    machine.display.paths[0].mode = simulation::DisplayMode{65'536, 65'535, 0xFFFFFFFF, 0xFFFF, 32};
    EXPECT_TRUE(Get());
    EXPECT_EQ(displays[1].width, 0u);
    EXPECT_EQ(displays[1].height, 65'535u);
    EXPECT_EQ(displays[1].refreshRate, 65'535u);
    EXPECT_EQ(displays[1].logPixels, 65'535u);
}

TEST_F(DisplayInformation, HasAQuarterOfTheBitsPerPixelAsColourDepth) {
    for (const auto& [bitsPerPixel, colorDepth] :
         {std::pair(32u, 8u), std::pair(24u, 6u), std::pair(16u, 4u), std::pair(8u, 2u),
          std::pair(3u, 0u), std::pair(0u, 0u),
          // Shifted first, then cut to 16 bits.
          std::pair(0x3FFFCu, 0xFFFFu), std::pair(0x40004u, 1u), std::pair(0x40000u, 0u)}) {
        displays.clear();
        machine.display.paths[0].mode->bitsPerPixel = bitsPerPixel;
        EXPECT_TRUE(Get());
        EXPECT_EQ(displays[0].colorDepth, colorDepth) << bitsPerPixel;
    }
}

TEST_F(DisplayInformation, LogsTheResultOfAFailedTargetSigned) {
    Fail("DisplayConfigGetDeviceInfo", 2, 0xC00000BB);
    EXPECT_FALSE(Get());
    EXPECT_THAT(Log(), ElementsAre(Line("Display get target device name failed! ret = -1073741637",
                                        "GetDisplayTargetDeviceName")));
}

}  // namespace
