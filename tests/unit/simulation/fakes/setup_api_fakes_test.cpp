#include "simulation/fakes/setup_api.h"

#include <gmock/gmock.h>
#include <setupapi.h>

#include "sample_machine.h"
#include "simulation/call_text.h"
#include "simulation/simulated_machine.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr DWORD kPresentOfAllClasses = DIGCF_PRESENT | DIGCF_ALLCLASSES;
constexpr DWORD kPresentWithInterface = DIGCF_PRESENT | DIGCF_DEVICEINTERFACE;
constexpr DWORD kPoison = 0xDEADBEEF;

class SetupApiFakes : public ::testing::Test {
protected:
    void TearDown() override {
        for (const HDEVINFO set : sets) {
            EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
        }
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    }

    /// Closed at the end of the test.
    HDEVINFO Open(const GUID* classGuid, DWORD flags, const wchar_t* enumerator = nullptr) {
        sets.push_back(SetupDiGetClassDevsW(classGuid, enumerator, nullptr, flags));
        return sets.back();
    }

    std::vector<std::wstring> IdsIn(HDEVINFO set) {
        std::vector<std::wstring> ids;
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof(device);
        wchar_t id[260];
        for (DWORD i = 0; SetupDiEnumDeviceInfo(set, i, &device); ++i) {
            EXPECT_TRUE(SetupDiGetDeviceInstanceIdW(set, &device, id, 260, nullptr));
            ids.emplace_back(id);
        }
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
        return ids;
    }

    SP_DEVINFO_DATA DeviceAt(HDEVINFO set, DWORD index) {
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof(device);
        EXPECT_TRUE(SetupDiEnumDeviceInfo(set, index, &device));
        return device;
    }

    SimulatedMachine machine{GetModuleHandleW(nullptr), KeyboardMachine(), {InstallSetupApiFakes}};
    World& world = machine.world();
    std::vector<HDEVINFO> sets;
};

TEST_F(SetupApiFakes, ListPresentDevicesOfAllClasses) {
    EXPECT_THAT(IdsIn(Open(nullptr, kPresentOfAllClasses)), ElementsAre(kUsbId, kHidId));
    EXPECT_THAT(IdsIn(Open(nullptr, DIGCF_ALLCLASSES)), ElementsAre(kUsbId, kHidId, kAbsentId));
}

TEST_F(SetupApiFakes, ListDevicesOfOneSetupClassOrEnumerator) {
    EXPECT_THAT(IdsIn(Open(&kKeyboardSetupClass, DIGCF_PRESENT)), ElementsAre(kHidId));
    EXPECT_THAT(IdsIn(Open(nullptr, DIGCF_ALLCLASSES, L"usb")), ElementsAre(kUsbId, kAbsentId));
    EXPECT_THAT(IdsIn(Open(nullptr, DIGCF_ALLCLASSES, kUsbId)), ElementsAre(kUsbId));
}

TEST_F(SetupApiFakes, ListDevicesWithAnInterfaceOfAClass) {
    EXPECT_THAT(IdsIn(Open(&kUsbDeviceInterface, kPresentWithInterface)),
                ElementsAre(kUsbId, kHidId));
    EXPECT_THAT(IdsIn(Open(&kHidInterface, kPresentWithInterface)), ElementsAre(kHidId));
    EXPECT_THAT(IdsIn(Open(&kUnknownClass, kPresentWithInterface)), IsEmpty());
}

TEST_F(SetupApiFakes, JournalHowASetIsOpened) {
    const HDEVINFO set = Open(&kHidInterface, kPresentWithInterface);
    const JournalEntry entry = world.journal.Entries().at(0);
    EXPECT_EQ(entry["classGuid"], "{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_EQ(entry["enumerator"], "null");
    EXPECT_EQ(entry["window"], "null");
    EXPECT_EQ(entry["flags"], "18");
    EXPECT_EQ(entry.result, CallText(set));
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::DeviceSet), 1u);
}

TEST_F(SetupApiFakes, GiveTheInstanceIdOnlyToABufferThatHoldsIt) {
    const HDEVINFO set = Open(nullptr, kPresentOfAllClasses);
    SP_DEVINFO_DATA device = DeviceAt(set, 0);
    const auto length = static_cast<DWORD>(std::wcslen(kUsbId));
    std::vector<wchar_t> id(length + 1, L'?');
    DWORD required = 0;
    SetLastError(kPoison);
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdW(set, &device, id.data(), length, &required));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(required, length + 1);
    EXPECT_EQ(id[0], L'?');
    SetLastError(kPoison);
    EXPECT_TRUE(SetupDiGetDeviceInstanceIdW(set, &device, id.data(), length + 1, nullptr));
    EXPECT_EQ(GetLastError(), kPoison);
    EXPECT_STREQ(id.data(), kUsbId);

    const JournalEntry entry = world.journal.Calls("SetupDiGetDeviceInstanceIdW").at(1);
    EXPECT_EQ(entry["device"], ToUtf8(kUsbId));
    EXPECT_EQ(entry["capacity"], std::to_string(length + 1));
    EXPECT_EQ(entry["required"], "null");
}

TEST_F(SetupApiFakes, GivePropertiesWithTheirTypes) {
    const HDEVINFO set = Open(nullptr, kPresentOfAllClasses);
    SP_DEVINFO_DATA device = DeviceAt(set, 1);
    EXPECT_EQ(device.ClassGuid, kKeyboardSetupClass);
    BYTE buffer[4096] = {};
    DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
    DWORD required = 0;
    ASSERT_TRUE(SetupDiGetDevicePropertyW(set, &device, &kClassKey, &type, buffer, sizeof(buffer),
                                          &required, 0));
    EXPECT_EQ(type, static_cast<DEVPROPTYPE>(DEVPROP_TYPE_STRING));
    EXPECT_STREQ(reinterpret_cast<const wchar_t*>(buffer), L"Keyboard");
    EXPECT_EQ(required, sizeof(L"Keyboard"));
    const DEVPROPKEY numberKey{kUnknownClass, 5};
    ASSERT_TRUE(SetupDiGetDevicePropertyW(set, &device, &numberKey, &type, buffer, sizeof(buffer),
                                          nullptr, 0));
    EXPECT_EQ(type, static_cast<DEVPROPTYPE>(DEVPROP_TYPE_UINT32));
    EXPECT_EQ(*reinterpret_cast<const UINT32*>(buffer), 7u);

    const JournalEntry entry = world.journal.Calls("SetupDiGetDevicePropertyW").at(0);
    EXPECT_EQ(entry["device"], ToUtf8(kHidId));
    EXPECT_EQ(entry["key"], "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 9");
    EXPECT_EQ(entry["capacity"], "4096");
    EXPECT_EQ(entry["flags"], "0");
}

TEST_F(SetupApiFakes, SayWhatIsWrongWithAPropertyRequest) {
    const HDEVINFO set = Open(nullptr, kPresentOfAllClasses);
    SP_DEVINFO_DATA device = DeviceAt(set, 1);
    BYTE buffer[64];
    DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
    DWORD required = 0;
    EXPECT_FALSE(
        SetupDiGetDevicePropertyW(set, &device, &kClassKey, &type, buffer, 17, &required, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(required, 18u);
    EXPECT_EQ(type, static_cast<DEVPROPTYPE>(DEVPROP_TYPE_STRING));
    EXPECT_FALSE(
        SetupDiGetDevicePropertyW(set, &device, &kParentKey, &type, buffer, 64, &required, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_FOUND));
    EXPECT_EQ(required, 0u);
}

TEST_F(SetupApiFakes, TakeNoDeviceOfAnotherSet) {
    SP_DEVINFO_DATA usb = DeviceAt(Open(nullptr, kPresentOfAllClasses), 0);
    const HDEVINFO keyboards = Open(&kKeyboardSetupClass, DIGCF_PRESENT);
    wchar_t id[260];
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdW(keyboards, &usb, id, 260, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST_F(SetupApiFakes, KeepASetAsItWasWhenOpened) {
    const HDEVINFO before = Open(nullptr, kPresentOfAllClasses);
    SP_DEVINFO_DATA device = DeviceAt(before, 0);
    ASSERT_TRUE(world.Unplug(kUsbId));
    EXPECT_EQ(DeviceAt(before, 0).DevInst, device.DevInst);
    wchar_t id[260];
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdW(before, &device, id, 260, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_SUCH_DEVINST));
    EXPECT_THAT(IdsIn(Open(nullptr, kPresentOfAllClasses)), ElementsAre(kHidId));
}

TEST_F(SetupApiFakes, FailAsPlanned) {
    world.faults.FailCall("SetupDiGetClassDevsW", 1, 5);
    EXPECT_EQ(SetupDiGetClassDevsW(nullptr, nullptr, nullptr, 6), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 5u);
    world.faults.FailCall("SetupDiGetClassDevsW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_THAT(IdsIn(Open(nullptr, kPresentOfAllClasses)), IsEmpty());

    const HDEVINFO set = Open(nullptr, kPresentOfAllClasses);
    SP_DEVINFO_DATA device = DeviceAt(set, 0);
    world.faults.FailCall("SetupDiEnumDeviceInfo", 1, 31);
    EXPECT_FALSE(SetupDiEnumDeviceInfo(set, 0, &device));
    EXPECT_EQ(GetLastError(), 31u);
    wchar_t id[260] = L"untouched";
    world.faults.FailCall("SetupDiGetDeviceInstanceIdW", 1, 13);
    EXPECT_FALSE(SetupDiGetDeviceInstanceIdW(set, &device, id, 260, nullptr));
    EXPECT_EQ(GetLastError(), 13u);
    world.faults.FailCall("SetupDiGetDeviceInstanceIdW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(SetupDiGetDeviceInstanceIdW(set, &device, id, 260, nullptr));
    EXPECT_STREQ(id, L"untouched");
    DEVPROPTYPE type = DEVPROP_TYPE_STRING;
    BYTE buffer[64];
    world.faults.FailCall("SetupDiGetDevicePropertyW", 1, 1168);
    EXPECT_FALSE(
        SetupDiGetDevicePropertyW(set, &device, &kClassKey, &type, buffer, 64, nullptr, 0));
    EXPECT_EQ(GetLastError(), 1168u);
    world.faults.FailCall("SetupDiGetDevicePropertyW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(SetupDiGetDevicePropertyW(set, &device, &kClassKey, &type, buffer, 64, nullptr, 0));
    EXPECT_EQ(type, static_cast<DEVPROPTYPE>(DEVPROP_TYPE_EMPTY));
    EXPECT_TRUE(world.faults.Missed().empty());
}

TEST_F(SetupApiFakes, FailToDestroyAsPlannedAndKeepTheSetOpen) {
    Open(nullptr, kPresentOfAllClasses);
    world.faults.FailCall("SetupDiDestroyDeviceInfoList", 1, 8);
    EXPECT_FALSE(SetupDiDestroyDeviceInfoList(sets[0]));
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::DeviceSet), 1u);
}

TEST(SetupApiFakesLedger, NotesASetThatIsDestroyedTwice) {
    SimulatedMachine machine(GetModuleHandleW(nullptr), KeyboardMachine(), {InstallSetupApiFakes});
    const HDEVINFO set = SetupDiGetClassDevsW(nullptr, nullptr, nullptr, kPresentOfAllClasses);
    EXPECT_FALSE(machine.world().ledger.Balanced());
    EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
    EXPECT_TRUE(machine.world().ledger.Balanced());
    EXPECT_FALSE(SetupDiDestroyDeviceInfoList(set));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    EXPECT_FALSE(machine.world().ledger.Balanced());
}

}  // namespace
}  // namespace simulation
