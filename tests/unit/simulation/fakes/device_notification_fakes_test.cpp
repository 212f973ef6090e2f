#include "simulation/fakes/device_notifications.h"

#include <gmock/gmock.h>
#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include "simulation/call_text.h"
#include "simulation/simulated_machine.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

class DeviceNotificationFakes : public ::testing::Test {
protected:
    DeviceNotificationFakes() {
        filter.dbcc_size = sizeof(filter);
        filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter.dbcc_classguid = kUsbDeviceInterface;
    }
    ~DeviceNotificationFakes() override { DestroyWindow(window); }

    HDEVNOTIFY Register() {
        return RegisterDeviceNotificationW(
            window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE | DEVICE_NOTIFY_ALL_INTERFACE_CLASSES);
    }

    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SimulatedMachine machine{
        GetModuleHandleW(nullptr), Machine(), {InstallDeviceNotificationFakes}};
    World& world = machine.world();
    DEV_BROADCAST_DEVICEINTERFACE_W filter{};
};

TEST_F(DeviceNotificationFakes, AccountForARegistration) {
    const HDEVNOTIFY notification = Register();
    ASSERT_NE(notification, nullptr);
    EXPECT_TRUE(world.ledger.IsOpen(ResourceKind::Notification, notification));
    EXPECT_TRUE(UnregisterDeviceNotification(notification));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    const JournalEntry entry = world.journal.Entries().at(0);
    EXPECT_EQ(entry["recipient"], CallText(window));
    EXPECT_EQ(entry["filterSize"], "32");
    EXPECT_EQ(entry["deviceType"], "5");
    EXPECT_EQ(entry["interfaceClass"], "{A5DCBF10-6530-11D2-901F-00C04FB951ED}");
    EXPECT_EQ(entry["flags"], "4");
}

TEST_F(DeviceNotificationFakes, FailAsPlanned) {
    world.faults.FailCall("RegisterDeviceNotificationW", 1, 1066);
    EXPECT_EQ(Register(), nullptr);
    EXPECT_EQ(GetLastError(), 1066u);
    const HDEVNOTIFY notification = Register();
    world.faults.FailCall("UnregisterDeviceNotification", 1, 6);
    EXPECT_FALSE(UnregisterDeviceNotification(notification));
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::Notification), 1u);
    EXPECT_TRUE(UnregisterDeviceNotification(notification));
}

}  // namespace
}  // namespace simulation
