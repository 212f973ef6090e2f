// What the display functions ask the system for, and what they offer it.
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "device_reporter/display_info.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::FaultVariant;
using device_tests::ImportOverride;
using device_tests::SampleDisplay;
using DeviceReporter::DisplayInfo;

/// On a machine with one monitor.
class DisplayCalls : public device_tests::MachineTest {
protected:
    DisplayCalls() { machine.display.paths = {SampleDisplay(1)}; }

    bool Get() { return DeviceReporter::GetDisplayInfo(displays); }

    std::vector<DisplayInfo> displays;
};

TEST_F(DisplayCalls, TakesCallsInOneOrder) {
    EXPECT_TRUE(Get());
    EXPECT_THAT(
        CalledFunctions(),
        ElementsAre("GetDisplayConfigBufferSizes", "QueryDisplayConfig",
                    "DisplayConfigGetDeviceInfo", "DisplayConfigGetDeviceInfo", "RegOpenKeyExA",
                    "RegQueryValueExA", "RegQueryValueExA", "RegCloseKey", "EnumDisplaySettingsW"));
}

TEST_F(DisplayCalls, SizesTheActivePathsButQueriesTheDatabase) {
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2)};
    EXPECT_TRUE(Get());
    EXPECT_THAT(Arguments("GetDisplayConfigBufferSizes", "flags"), ElementsAre("2"));
    EXPECT_THAT(Arguments("QueryDisplayConfig", "flags"), ElementsAre("4"));
    EXPECT_THAT(Arguments("QueryDisplayConfig", "pathCount"), ElementsAre("2"));
    EXPECT_THAT(Arguments("QueryDisplayConfig", "modeCount"), ElementsAre("4"));
}

TEST_F(DisplayCalls, NamesSourceAndTargetByTheSourcesAdapterAlthoughTheTargetHasAnother) {
    machine.display.paths[0].sourceId = 7;
    machine.display.paths[0].targetId = 99;
    machine.display.paths[0].targetAdapter = {0x2000, 2};
    EXPECT_FALSE(Get());
    EXPECT_THAT(Arguments("DisplayConfigGetDeviceInfo", "type"), ElementsAre("1", "2"));
    EXPECT_THAT(Arguments("DisplayConfigGetDeviceInfo", "size"), ElementsAre("84", "420"));
    EXPECT_THAT(Arguments("DisplayConfigGetDeviceInfo", "adapter"),
                ElementsAre("1:4096", "1:4096"));
    EXPECT_THAT(Arguments("DisplayConfigGetDeviceInfo", "id"), ElementsAre("7", "99"));
}

TEST_F(DisplayCalls, AsksForTheCurrentModeOfTheSource) {
    EXPECT_TRUE(Get());
    EXPECT_THAT(Arguments("EnumDisplaySettingsW", "device"), ElementsAre("\\\\.\\DISPLAY1"));
    EXPECT_THAT(Arguments("EnumDisplaySettingsW", "modeNumber"), ElementsAre("-1"));
    EXPECT_THAT(Arguments("EnumDisplaySettingsW", "structureSize"), ElementsAre("220"));
}

TEST_F(DisplayCalls, GoesByTheCountThatTheQueryReturns) {
    Fail("GetDisplayConfigBufferSizes", 1, 5, FaultVariant::ShortSize);
    EXPECT_TRUE(Get());
    EXPECT_THAT(Arguments("QueryDisplayConfig", "pathCount"), ElementsAre("5"));
    EXPECT_EQ(displays.size(), 1u);
}

template <class Value>
bool IsClear(const Value& value) {
    const auto* const bytes = reinterpret_cast<const BYTE*>(&value);
    return std::all_of(bytes, bytes + sizeof(value), [](BYTE byte) { return byte == 0; });
}

bool arraysWereClear = false;
DISPLAYCONFIG_TOPOLOGY_ID topologyBefore;

LONG WINAPI QueryWithoutTopology(UINT32 flags, UINT32* pathCount, DISPLAYCONFIG_PATH_INFO* paths,
                                 UINT32* modeCount, DISPLAYCONFIG_MODE_INFO* modes,
                                 DISPLAYCONFIG_TOPOLOGY_ID* topology) {
    topologyBefore = *topology;
    arraysWereClear = std::all_of(paths, paths + *pathCount, IsClear<DISPLAYCONFIG_PATH_INFO>) &&
                      std::all_of(modes, modes + *modeCount, IsClear<DISPLAYCONFIG_MODE_INFO>);
    const LONG result = ImportOverride<decltype(::QueryDisplayConfig)>::Next()(
        flags, pathCount, paths, modeCount, modes, topology);
    *topology = topologyBefore;
    return result;
}

TEST_F(DisplayCalls, BeginsWithClearArraysAndTheInternalTopology) {
    machine.display.topology = 8;
    const ImportOverride<decltype(::QueryDisplayConfig)> handMade("QueryDisplayConfig",
                                                                  QueryWithoutTopology);
    EXPECT_TRUE(Get());
    EXPECT_TRUE(arraysWereClear);
    EXPECT_EQ(topologyBefore, 1);
    EXPECT_EQ(displays.at(0).displayMode, L"INTERNAL");
}

bool modeWasClear = false;

BOOL WINAPI LookAtMode(const wchar_t* device, DWORD number, DEVMODEW* mode) {
    DEVMODEW rest = *mode;
    rest.dmSize = 0;
    modeWasClear = IsClear(rest);
    return ImportOverride<decltype(::EnumDisplaySettingsW)>::Next()(device, number, mode);
}

TEST_F(DisplayCalls, OffersAClearedModeStructure) {
    const ImportOverride<decltype(::EnumDisplaySettingsW)> handMade("EnumDisplaySettingsW",
                                                                    LookAtMode);
    EXPECT_TRUE(Get());
    EXPECT_TRUE(modeWasClear);
}

LONG WINAPI FillTheNames(DISPLAYCONFIG_DEVICE_INFO_HEADER* request) {
    const auto fill = [](auto& text) {
        // A path that has the pieces of a monitor's, and no terminator.
        std::fill(std::begin(text), std::end(text), L'x');
        const std::wstring begin = L"DISPLAY#A#B#";
        begin.copy(text, begin.size());
    };
    if (request->type == DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME) {
        fill(reinterpret_cast<DISPLAYCONFIG_SOURCE_DEVICE_NAME*>(request)->viewGdiDeviceName);
    } else {
        auto* const target = reinterpret_cast<DISPLAYCONFIG_TARGET_DEVICE_NAME*>(request);
        fill(target->monitorFriendlyDeviceName);
        fill(target->monitorDevicePath);
    }
    return ERROR_SUCCESS;
}

TEST_F(DisplayCalls, TakesNamesThatFillTheirFieldsWithoutTerminator) {
    const ImportOverride<decltype(::DisplayConfigGetDeviceInfo)> handMade(
        "DisplayConfigGetDeviceInfo", FillTheNames);
    DisplayInfo display;
    EXPECT_FALSE(DeviceReporter::GetDisplayInfoFromPathInfo({}, display, true));
    EXPECT_TRUE(display.isFirstPath);
    EXPECT_EQ(display.sourceName.size(), 32u);
    EXPECT_EQ(display.monitorName.size(), 64u);
    EXPECT_EQ(display.monitorDevicePath.size(), 128u);
}

}  // namespace
