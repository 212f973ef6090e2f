#include "device_reporter/display_info.h"

#include <string>

#include "unit/device_reporter/display_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using device_tests::SampleDisplay;
using DeviceReporter::DisplayInfo;

class DisplayInformation : public device_tests::DisplayTest {};

TEST(DisplayRecord, StartsEmptyAndHasItsFieldsInOrder) {
    const DisplayInfo empty;
    const auto& [isFirstPath, sourceName, monitorName, monitorDevicePath, edidRegPath, edidHex,
                 edidVendor, width, height, refreshRate, logPixels, colorDepth, displayMode] =
        empty;
    EXPECT_FALSE(isFirstPath);
    EXPECT_EQ(&sourceName, &empty.sourceName);
    EXPECT_EQ(&monitorName, &empty.monitorName);
    EXPECT_EQ(&monitorDevicePath, &empty.monitorDevicePath);
    EXPECT_EQ(&edidRegPath, &empty.edidRegPath);
    EXPECT_EQ(&edidHex, &empty.edidHex);
    EXPECT_EQ(&edidVendor, &empty.edidVendor);
    EXPECT_EQ(&displayMode, &empty.displayMode);
    for (const std::wstring* text : {&sourceName, &monitorName, &monitorDevicePath, &edidRegPath,
                                     &edidHex, &edidVendor, &displayMode}) {
        EXPECT_EQ(*text, L"");
    }
    for (const std::uint16_t* number : {&width, &height, &refreshRate, &logPixels, &colorDepth}) {
        EXPECT_EQ(*number, 0u);
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

TEST_F(DisplayInformation, HasTheWordOfOneTopologyInEveryRecord) {
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2)};
    for (const auto& [topology, word] : {std::pair(1u, L"INTERNAL"), std::pair(2u, L"CLONE"),
                                         std::pair(4u, L"EXTEND"), std::pair(8u, L"EXTERNAL")}) {
        displays.clear();
        machine.display.topology = topology;
        EXPECT_TRUE(Get());
        ASSERT_EQ(displays.size(), 2u);
        EXPECT_EQ(displays[0].displayMode, word);
        EXPECT_EQ(displays[1].displayMode, word);
    }
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DisplayInformation, LogsAnUnknownTopologyOnceForAllPaths) {
    machine.display.topology = 16;
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2)};
    EXPECT_TRUE(Get());
    ASSERT_EQ(displays.size(), 2u);
    EXPECT_EQ(displays[0].displayMode, L"UNKNOWN");
    EXPECT_EQ(displays[1].displayMode, L"UNKNOWN");
    EXPECT_THAT(Log(), ElementsAre(Line("GetUnknownDisplayMode:16", "GetDisplayMode")));
}

TEST_F(DisplayInformation, IsAppended) {
    displays.emplace_back();
    EXPECT_TRUE(Get());
    ASSERT_EQ(displays.size(), 2u);
    EXPECT_EQ(displays[0].monitorName, L"");
    EXPECT_TRUE(displays[1].isFirstPath);
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

TEST_F(DisplayInformation, IsReadAfreshEachTime) {
    EXPECT_TRUE(Get());
    machine.display.paths[0].mode->width = 1024;
    machine.display.topology = 2;
    EXPECT_TRUE(Get());
    EXPECT_EQ(displays.at(0).width, 1920u);
    EXPECT_EQ(displays.at(1).width, 1024u);
    EXPECT_EQ(displays.at(1).displayMode, L"CLONE");
}

}  // namespace
