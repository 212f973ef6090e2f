#include "simulation/fakes/registry.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "sample_machine.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

constexpr char kFirstMonitor[] =
    "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\HEL1234\\5&2a3b4c&0&UID4352\\Device Parameters";
constexpr char kSecondMonitor[] =
    "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\HEL9999\\5&2a3b4c&0&UID4353\\Device Parameters";

class RegistryFakes : public ::testing::Test {
protected:
    LSTATUS Open(const char* path) {
        return RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key);
    }

    LSTATUS Query(BYTE* data) { return RegQueryValueExA(key, "EDID", nullptr, &type, data, &size); }

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), TwoMonitorMachine(), {InstallRegistryFakes}};
    World& world = machine.world();
    HKEY key = nullptr;
    DWORD type = REG_NONE;
    DWORD size = 0;
};

TEST_F(RegistryFakes, GiveTheMonitorsEdidInTwoCalls) {
    ASSERT_EQ(Open(kFirstMonitor), ERROR_SUCCESS);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::RegistryKey), 1u);
    EXPECT_EQ(Query(nullptr), ERROR_SUCCESS);
    EXPECT_EQ(size, 128u);
    EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
    std::vector<BYTE> data(129, 0xEE);
    size = 127;
    EXPECT_EQ(Query(data.data()), ERROR_MORE_DATA);
    EXPECT_EQ(size, 128u);
    EXPECT_EQ(data[0], 0xEE);
    EXPECT_EQ(Query(data.data()), ERROR_SUCCESS);
    EXPECT_EQ(data[127], 0x5A);
    EXPECT_EQ(data[128], 0xEE);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;

    const JournalEntry opened = world.journal.Entries().at(0);
    EXPECT_EQ(opened["root"], "HKEY_LOCAL_MACHINE");
    EXPECT_EQ(opened["subKey"], kFirstMonitor);
    EXPECT_EQ(opened["options"], "0");
    EXPECT_EQ(opened["access"], std::to_string(0x20019));
    const JournalEntry asked = world.journal.Entries().at(1);
    EXPECT_EQ(asked["name"], "EDID");
    EXPECT_EQ(asked["reserved"], "null");
    EXPECT_EQ(asked["data"], "null");
    EXPECT_EQ(asked["size"], "0");
}

TEST_F(RegistryFakes, KnowNoOtherMonitorsAndValues) {
    EXPECT_EQ(Open("system\\currentcontrolset\\ENUM\\display\\HEL0000\\1\\Device Parameters"),
              ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(Open(kSecondMonitor), ERROR_SUCCESS);
    EXPECT_EQ(Query(nullptr), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(Query(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(world.ledger.Errors().size(), 1u);
}

TEST_F(RegistryFakes, GiveAnEmptyValue) {
    world.Change([](Machine& changed) { changed.display.paths[1].edid.emplace(); });
    ASSERT_EQ(Open(kSecondMonitor), ERROR_SUCCESS);
    size = 5;
    EXPECT_EQ(Query(nullptr), ERROR_SUCCESS);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(RegistryFakes, LeaveOtherKeysToTheSystem) {
    ASSERT_EQ(Open("SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion"), ERROR_SUCCESS);
    EXPECT_FALSE(ResourceLedger::IsSimulatedHandle(key));
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::RegistryKey), 1u);
    EXPECT_EQ(RegQueryValueExA(key, "CurrentVersion", nullptr, &type, nullptr, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    EXPECT_EQ(Open("SOFTWARE\\no such key"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(world.journal.Entries().back().error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(RegistryFakes, FailAsPlanned) {
    world.faults.FailCall("RegOpenKeyExA", 1, 5);
    EXPECT_EQ(Open(kFirstMonitor), ERROR_ACCESS_DENIED);
    ASSERT_EQ(Open(kFirstMonitor), ERROR_SUCCESS);
    world.faults.FailCall("RegQueryValueExA", 2, 1018);
    EXPECT_EQ(Query(nullptr), ERROR_SUCCESS);
    EXPECT_EQ(Query(nullptr), 1018);
    world.faults.FailCall("RegQueryValueExA", 1, 64, FaultVariant::ShortSize);
    EXPECT_EQ(Query(nullptr), ERROR_SUCCESS);
    EXPECT_EQ(size, 64u);
    world.faults.FailCall("RegCloseKey", 1, 6);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::RegistryKey), 1u);
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
}  // namespace simulation
