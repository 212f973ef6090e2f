#include "simulation/fakes/setup_api_interfaces.h"

#include <gmock/gmock.h>
#include <setupapi.h>

#include "sample_machine.h"
#include "simulation/call_text.h"
#include "simulation/fakes/setup_api.h"
#include "simulation/simulated_machine.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One open set; `device` is the HID device in it.
class SetupApiInterfaceFakes : public ::testing::Test {
protected:
    ~SetupApiInterfaceFakes() override {
        EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    }

    void OpenSet(const GUID* classGuid, DWORD flags, DWORD deviceIndex) {
        set = SetupDiGetClassDevsW(classGuid, nullptr, nullptr, flags);
        device.cbSize = sizeof(device);
        ASSERT_TRUE(SetupDiEnumDeviceInfo(set, deviceIndex, &device));
    }

    SP_DEVICE_INTERFACE_DATA InterfaceAt(DWORD index) {
        SP_DEVICE_INTERFACE_DATA data{};
        data.cbSize = sizeof(data);
        EXPECT_TRUE(SetupDiEnumDeviceInterfaces(set, &device, &kHidInterface, index, &data));
        return data;
    }

    std::vector<std::wstring> PathsOf(SP_DEVINFO_DATA* ofDevice, const GUID& interfaceClass) {
        std::vector<std::wstring> paths;
        SP_DEVICE_INTERFACE_DATA data{};
        data.cbSize = sizeof(data);
        for (DWORD i = 0; SetupDiEnumDeviceInterfaces(set, ofDevice, &interfaceClass, i, &data);
             ++i) {
            EXPECT_EQ(data.InterfaceClassGuid, interfaceClass);
            EXPECT_EQ(data.Flags, static_cast<DWORD>(SPINT_ACTIVE));
            alignas(8) BYTE block[1024] = {};
            auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block);
            detail->cbSize = sizeof(*detail);
            EXPECT_TRUE(SetupDiGetDeviceInterfaceDetailW(set, &data, detail, sizeof(block), nullptr,
                                                         nullptr));
            paths.emplace_back(detail->DevicePath);
        }
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
        return paths;
    }

    SimulatedMachine machine{GetModuleHandleW(nullptr), KeyboardMachine(), {InstallSetupApiFakes}};
    World& world = machine.world();
    HDEVINFO set = nullptr;
    SP_DEVINFO_DATA device{};
};

TEST_F(SetupApiInterfaceFakes, ListInterfacesOfTheDeviceAndClass) {
    OpenSet(&kHidInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE, 0);
    EXPECT_THAT(PathsOf(&device, kHidInterface), ElementsAre(kHidPath, kSilentHidPath));
    EXPECT_THAT(PathsOf(&device, kUnknownClass), IsEmpty());
}

TEST_F(SetupApiInterfaceFakes, ListInterfacesOfOtherClassesThanTheSetsNever) {
    OpenSet(&kUsbDeviceInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE, 1);
    EXPECT_THAT(PathsOf(&device, kHidInterface), IsEmpty());
    EXPECT_EQ(PathsOf(&device, kUsbDeviceInterface).size(), 1u);
    EXPECT_EQ(PathsOf(nullptr, kUsbDeviceInterface).size(), 2u);
}

TEST_F(SetupApiInterfaceFakes, ListNoneInASetThatWasNotOpenedForInterfaces) {
    OpenSet(nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES, 1);
    EXPECT_THAT(PathsOf(&device, kHidInterface), IsEmpty());
}

TEST_F(SetupApiInterfaceFakes, GiveDetailInTwoCalls) {
    OpenSet(&kHidInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE, 0);
    SP_DEVICE_INTERFACE_DATA data = InterfaceAt(0);
    const auto needed = static_cast<DWORD>(4 + sizeof(kHidPath));
    DWORD required = 0;
    EXPECT_FALSE(SetupDiGetDeviceInterfaceDetailW(set, &data, nullptr, 0, &required, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    ASSERT_EQ(required, needed);

    std::vector<BYTE> block(needed + 2, 0xEE);
    auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block.data());
    detail->cbSize = sizeof(*detail);
    EXPECT_FALSE(
        SetupDiGetDeviceInterfaceDetailW(set, &data, detail, needed - 1, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    SP_DEVINFO_DATA owner{};
    owner.cbSize = sizeof(owner);
    ASSERT_TRUE(SetupDiGetDeviceInterfaceDetailW(set, &data, detail, needed, &required, &owner));
    EXPECT_STREQ(detail->DevicePath, kHidPath);
    EXPECT_EQ(owner.DevInst, device.DevInst);
    EXPECT_EQ(block[needed], 0xEE);

    const std::vector<JournalEntry> calls = world.journal.Calls("SetupDiGetDeviceInterfaceDetailW");
    EXPECT_EQ(calls[0]["path"], ToUtf8(kHidPath));
    EXPECT_EQ(calls[0]["detail"], "null");
    EXPECT_EQ(calls[0]["size"], "0");
    EXPECT_EQ(calls[2]["structureSize"], "8");
    EXPECT_EQ(calls[2]["size"], std::to_string(needed));
}

TEST_F(SetupApiInterfaceFakes, RefuseAStructureOfAnotherSize) {
    OpenSet(&kHidInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE, 0);
    SP_DEVICE_INTERFACE_DATA data = InterfaceAt(0);
    data.cbSize = 28;
    EXPECT_FALSE(SetupDiEnumDeviceInterfaces(set, &device, &kHidInterface, 0, &data));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_USER_BUFFER));
    data.cbSize = sizeof(data);
    alignas(8) BYTE block[1024] = {};
    auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block);
    detail->cbSize = sizeof(block);
    EXPECT_FALSE(
        SetupDiGetDeviceInterfaceDetailW(set, &data, detail, sizeof(block), nullptr, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_USER_BUFFER));
}

TEST_F(SetupApiInterfaceFakes, FailAsPlanned) {
    OpenSet(&kHidInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE, 0);
    SP_DEVICE_INTERFACE_DATA data = InterfaceAt(0);
    world.faults.FailCall("SetupDiEnumDeviceInterfaces", 1, 31);
    EXPECT_FALSE(SetupDiEnumDeviceInterfaces(set, &device, &kHidInterface, 0, &data));
    EXPECT_EQ(GetLastError(), 31u);
    DWORD required = 77;
    world.faults.FailCall("SetupDiGetDeviceInterfaceDetailW", 1, 87);
    EXPECT_FALSE(SetupDiGetDeviceInterfaceDetailW(set, &data, nullptr, 0, &required, nullptr));
    EXPECT_EQ(GetLastError(), 87u);
    world.faults.FailCall("SetupDiGetDeviceInterfaceDetailW", 1, 0,
                          FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(SetupDiGetDeviceInterfaceDetailW(set, &data, nullptr, 0, &required, nullptr));
    EXPECT_EQ(required, 77u);
    world.faults.FailCall("SetupDiGetDeviceInterfaceDetailW", 1, 6, FaultVariant::ShortSize);
    EXPECT_FALSE(SetupDiGetDeviceInterfaceDetailW(set, &data, nullptr, 0, &required, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(required, 6u);
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
}  // namespace simulation
