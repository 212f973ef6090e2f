#include "simulation/fakes/hid.h"

#include <gmock/gmock.h>
#include <windows.h>
// windows.h has to come first. Not every header of it declares C linkage by itself.
extern "C" {
#include <hidsdi.h>
}

#include "sample_machine.h"
#include "simulation/call_text.h"
#include "simulation/fakes/handles.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

class HidFakes : public ::testing::Test {
protected:
    ~HidFakes() override { EXPECT_TRUE(world.ledger.Balanced()) << world.ledger; }

    static HANDLE Open(const wchar_t* path) {
        return CreateFileW(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                           FILE_FLAG_OVERLAPPED, nullptr);
    }

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), KeyboardMachine(), {InstallHidFakes, InstallHandleFakes}};
    World& world = machine.world();
    wchar_t text[260] = L"untouched";
};

TEST_F(HidFakes, AnswerWithTheTextsOfTheDevice) {
    const HANDLE file = Open(kHidPath);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::File), 1u);
    EXPECT_TRUE(HidD_GetProductString(file, text, 260));
    EXPECT_STREQ(text, L"Feldherr Tastatur");
    // The shorter text leaves the rest of the longer one behind its terminator.
    EXPECT_TRUE(HidD_GetManufacturerString(file, text, 260));
    EXPECT_STREQ(text, L"Klavi\u00E9r");
    EXPECT_STREQ(text + 8, L" Tastatur");
    EXPECT_TRUE(CloseHandle(file));

    const JournalEntry entry = world.journal.Calls("CreateFileW").at(0);
    EXPECT_EQ(entry["path"], ToUtf8(kHidPath));
    EXPECT_EQ(entry["access"], "0");
    EXPECT_EQ(entry["share"], "3");
    EXPECT_EQ(entry["security"], "null");
    EXPECT_EQ(entry["disposition"], "3");
    EXPECT_EQ(entry["flags"], std::to_string(FILE_FLAG_OVERLAPPED));
    EXPECT_EQ(entry["templateFile"], "null");
    EXPECT_EQ(world.journal.Calls("HidD_GetProductString").at(0)["size"], "260");
}

TEST_F(HidFakes, TakeTheLengthInBytesWithTheTerminator) {
    const HANDLE file = Open(
        L"\\\\?\\HID#VID_1A2B&PID_0001&MI_00#7&22&0&0000#"
        L"{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_FALSE(HidD_GetProductString(file, text, 35));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_STREQ(text, L"untouched");
    EXPECT_TRUE(HidD_GetProductString(file, text, 36));
    EXPECT_TRUE(CloseHandle(file));
}

TEST_F(HidFakes, RefuseWhatTheMachineRefuses) {
    EXPECT_EQ(Open(kSilentHidPath), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
    EXPECT_EQ(Open(L"\\\\?\\usb#vid_1a2b&pid_0001#5&11&0&2#{usb}"), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    world.Change([](Machine& changed) { changed.devices[1].interfaces[0].hid->product.reset(); });
    const HANDLE file = Open(kHidPath);
    EXPECT_FALSE(HidD_GetProductString(file, text, 260));
    EXPECT_TRUE(HidD_GetManufacturerString(file, text, 260));
    world.Unplug(kHidId);
    EXPECT_FALSE(HidD_GetManufacturerString(file, text, 260));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DEVICE_NOT_CONNECTED));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_FALSE(HidD_GetManufacturerString(file, text, 260));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST_F(HidFakes, LeaveOtherFilesToTheSystem) {
    const HANDLE file = CreateFileW(L"NUL", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file, "x", 1, &written, nullptr));
    EXPECT_FALSE(HidD_GetProductString(file, text, 260));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_EQ(Open(L"C:\\no such file"), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(world.journal.Calls("CreateFileW").at(1).error,
              static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(HidFakes, FailAsPlanned) {
    world.faults.FailCall("CreateFileW", 1, 32);
    EXPECT_EQ(Open(kHidPath), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 32u);
    const HANDLE file = Open(kHidPath);
    world.faults.FailCall("HidD_GetProductString", 1, 31);
    EXPECT_FALSE(HidD_GetProductString(file, text, 260));
    EXPECT_EQ(GetLastError(), 31u);
    world.faults.FailCall("HidD_GetManufacturerString", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(HidD_GetManufacturerString(file, text, 260));
    EXPECT_STREQ(text, L"untouched");
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
}  // namespace simulation
