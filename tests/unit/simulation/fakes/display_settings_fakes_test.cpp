#include "simulation/fakes/display_settings.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "sample_machine.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

class DisplaySettingsFakes : public ::testing::Test {
protected:
    DisplaySettingsFakes() { mode.dmSize = sizeof(mode); }

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), TwoMonitorMachine(), {InstallDisplaySettingsFakes}};
    World& world = machine.world();
    DEVMODEW mode{};
};

TEST_F(DisplaySettingsFakes, GiveTheCurrentMode) {
    ASSERT_TRUE(EnumDisplaySettingsW(L"\\\\.\\DISPLAY1", ENUM_CURRENT_SETTINGS, &mode));
    EXPECT_EQ(mode.dmPelsWidth, 2560u);
    EXPECT_EQ(mode.dmPelsHeight, 1440u);
    EXPECT_EQ(mode.dmDisplayFrequency, 75u);
    EXPECT_EQ(mode.dmLogPixels, 120u);
    EXPECT_EQ(mode.dmBitsPerPel, 32u);
    EXPECT_TRUE(EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode));
    const JournalEntry entry = world.journal.Entries().at(0);
    EXPECT_EQ(entry["device"], "\\\\.\\DISPLAY1");
    EXPECT_EQ(entry["modeNumber"], "-1");
    EXPECT_EQ(entry["structureSize"], "220");
}

TEST_F(DisplaySettingsFakes, KnowNoOtherDevicesAndModes) {
    EXPECT_FALSE(EnumDisplaySettingsW(L"\\\\.\\DISPLAY3", ENUM_CURRENT_SETTINGS, &mode));
    EXPECT_FALSE(EnumDisplaySettingsW(L"\\\\.\\DISPLAY2", ENUM_CURRENT_SETTINGS, &mode));
    EXPECT_FALSE(EnumDisplaySettingsW(L"\\\\.\\DISPLAY1", 0, &mode));
    EXPECT_EQ(mode.dmPelsWidth, 0u);
    world.faults.FailCall("EnumDisplaySettingsW", 1, 8);
    EXPECT_FALSE(EnumDisplaySettingsW(L"\\\\.\\DISPLAY1", ENUM_CURRENT_SETTINGS, &mode));
    EXPECT_EQ(GetLastError(), 8u);
}

}  // namespace
}  // namespace simulation
