#include "simulation/fakes/version_info.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "simulation/call_text.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

constexpr wchar_t kPath[] = L"C:\\Program Files\\Zentro\\Center.exe";

Machine MachineWithVersion() {
    Machine machine;
    machine.fileVersions[kPath] = {{1, 2, 3, 4}, {5, 60, 700, 65535}};
    return machine;
}

class VersionInfoFakes : public ::testing::Test {
protected:
    const VS_FIXEDFILEINFO* Numbers() {
        void* value = nullptr;
        EXPECT_TRUE(VerQueryValueW(block.data(), L"\\", &value, &length));
        return static_cast<const VS_FIXEDFILEINFO*>(value);
    }

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), MachineWithVersion(), {InstallVersionInfoFakes}};
    World& world = machine.world();
    std::vector<BYTE> block;
    UINT length = 0;
};

TEST_F(VersionInfoFakes, GiveAResourceThatTheSystemCanRead) {
    const DWORD size = GetFileVersionInfoSizeW(L"c:\\program files\\zentro\\center.exe", nullptr);
    ASSERT_NE(size, 0u);
    block.assign(size, 0);
    ASSERT_TRUE(GetFileVersionInfoW(kPath, 0, size, block.data()));
    const VS_FIXEDFILEINFO* const numbers = Numbers();
    ASSERT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    EXPECT_EQ(numbers->dwFileVersionMS, 0x00010002u);
    EXPECT_EQ(numbers->dwFileVersionLS, 0x00030004u);
    EXPECT_EQ(numbers->dwProductVersionMS, 0x0005003Cu);
    EXPECT_EQ(numbers->dwProductVersionLS, 0x02BCFFFFu);
    const std::vector<JournalEntry> calls = world.journal.Entries();
    EXPECT_EQ(calls.at(0)["handle"], "null");
    EXPECT_EQ(calls.at(1)["path"], ToUtf8(kPath));
    EXPECT_EQ(calls.at(1)["size"], std::to_string(size));
    EXPECT_EQ(calls.at(2)["subBlock"], "\\");
}

TEST_F(VersionInfoFakes, KnowNoFileOfTheRealSystem) {
    EXPECT_EQ(GetFileVersionInfoSizeW(L"kernel32.dll", nullptr), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    BYTE none = 0xEE;
    EXPECT_FALSE(GetFileVersionInfoW(L"kernel32.dll", 0, 1, &none));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(none, 0xEE);
}

TEST_F(VersionInfoFakes, FailAsPlanned) {
    world.faults.FailCall("GetFileVersionInfoSizeW", 1, 1813);
    EXPECT_EQ(GetFileVersionInfoSizeW(kPath, nullptr), 0u);
    EXPECT_EQ(GetLastError(), 1813u);
    world.faults.FailCall("GetFileVersionInfoSizeW", 1, 40, FaultVariant::ShortSize);
    EXPECT_EQ(GetFileVersionInfoSizeW(kPath, nullptr), 40u);
    block.assign(GetFileVersionInfoSizeW(kPath, nullptr), 0xEE);
    const auto size = static_cast<DWORD>(block.size());
    world.faults.FailCall("GetFileVersionInfoW", 1, 1812);
    EXPECT_FALSE(GetFileVersionInfoW(kPath, 0, size, block.data()));
    EXPECT_EQ(GetLastError(), 1812u);
    world.faults.FailCall("GetFileVersionInfoW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(GetFileVersionInfoW(kPath, 0, size, block.data()));
    EXPECT_EQ(block[0], 0xEE);
    EXPECT_TRUE(GetFileVersionInfoW(kPath, 0, size, block.data()));

    world.faults.FailCall("VerQueryValueW", 1, 0, FaultVariant::NullResult);
    EXPECT_EQ(Numbers(), nullptr);
    EXPECT_EQ(length, 0u);
    world.faults.FailCall("VerQueryValueW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_NE(Numbers(), nullptr);
    EXPECT_EQ(length, 0u);
    world.faults.FailCall("VerQueryValueW", 1, 51, FaultVariant::ShortSize);
    EXPECT_NE(Numbers(), nullptr);
    EXPECT_EQ(length, 51u);
    world.faults.FailCall("VerQueryValueW", 1, 1813);
    void* value = nullptr;
    EXPECT_FALSE(VerQueryValueW(block.data(), L"\\", &value, &length));
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
}  // namespace simulation
