// Both fills of the device map.
#include "device_reporter/device_enumeration.h"

#include <windows.h>
#include <cfgmgr32.h>

#include <clocale>
#include <string>
#include <vector>

#include "simulation/well_known.h"
#include "support/grouping_locale.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::FaultVariant;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using device_tests::PlainDevice;
using DeviceReporter::DeviceInfo;
using simulation::DeviceProperty;

struct FillKind {
    const char* name;
    bool byInterface;
    std::string function;  ///< Under which the fill logs.
};

class Fill : public device_tests::MachineTest, public testing::WithParamInterface<FillKind> {
protected:
    bool Run() {
        return GetParam().byInterface
                   ? DeviceReporter::AddDeviceInterfaceToMap(simulation::kHidInterface, devices)
                   : DeviceReporter::AddAllDevicesToMap(devices);
    }

    /// Devices with these ids, each with a HID interface that can be opened, so that there is no
    /// log line about it.
    void GiveMachine(const std::vector<std::wstring>& ids) {
        machine.devices.clear();
        for (const std::wstring& id : ids) {
            machine.devices.push_back(PlainDevice(id));
            machine.devices.back().interfaces = {
                {simulation::kHidInterface, L"\\\\?\\" + id, simulation::HidAnswers{}}};
        }
    }
    void GiveMachine(std::size_t count) {
        std::vector<std::wstring> ids;
        for (std::size_t i = 0; i < count; ++i) {
            ids.push_back(L"USB\\" + std::to_wstring(1000 + i));
        }
        GiveMachine(ids);
    }
    void NameDevice(std::size_t index, const std::wstring& name) {
        machine.devices[index].properties = {DeviceProperty::String(simulation::kNameKey, name)};
    }

    /// Entries that no device of the machine has.
    void Preload(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            devices.emplace(L"PCI\\" + std::to_wstring(i), DeviceInfo{});
        }
    }

    /// A log line of this fill.
    std::string Line(const std::string& text) const {
        return "log 3 " + text + "(" + GetParam().function + ")";
    }

    std::vector<std::wstring> Keys() const {
        std::vector<std::wstring> keys;
        for (const auto& [key, record] : devices) {
            keys.push_back(key);
        }
        return keys;
    }

    DeviceReporter::DeviceMap devices;
};

INSTANTIATE_TEST_SUITE_P(
    Each, Fill,
    testing::Values(FillKind{"Full", false, "DeviceReporter::AddAllDevicesToMap"},
                    FillKind{"Interface", true, "DeviceReporter::AddDeviceInterfaceToMap"}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(Fill, MakesARecordOfADevice) {
    GiveMachine({L"usb\\vid_046d&pid_c52b\\6&12ab"});
    machine.devices[0].SetRemovable(true);
    machine.devices[0].properties = {
        DeviceProperty::String(simulation::kParentKey, L"USB\\ROOT_HUB30\\4&1"),
        DeviceProperty::String(simulation::kClassKey, L"USB"),
        DeviceProperty::String(simulation::kManufacturerKey, L"Maker"),
        DeviceProperty::String(simulation::kDeviceDescKey, L"Composite Device"),
        DeviceProperty::String(simulation::kFriendlyNameKey, L"Receiver"),
        DeviceProperty::String(simulation::kNameKey, L"Composite Device"),
        DeviceProperty::Guid(simulation::kContainerIdKey, simulation::kHidInterface)};
    EXPECT_TRUE(Run());
    ASSERT_THAT(Keys(), ElementsAre(L"USB\\VID_046D&PID_C52B\\6&12AB"));
    const DeviceInfo& record = devices.begin()->second;
    EXPECT_EQ(record.instanceId, L"USB\\VID_046D&PID_C52B\\6&12AB");
    EXPECT_TRUE(record.isRemovable);
    EXPECT_EQ(record.parent, L"USB\\ROOT_HUB30\\4&1");
    EXPECT_EQ(record.className, L"USB");
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_EQ(record.description, L"Composite Device");
    EXPECT_EQ(record.name, L"Receiver\nComposite Device");
    EXPECT_EQ(record.vendorId, L"VID_046D&PID_C52B");
    EXPECT_EQ(record.containerId, L"{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(Fill, AsksForPresentDevicesFromIndexZeroAndForTheirIdsWithRoomFor260Units) {
    GiveMachine({L"USB\\A", L"USB\\B", L"USB\\C"});
    machine.devices[2].present = false;
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\A", L"USB\\B"));
    ASSERT_EQ(Calls("SetupDiGetClassDevsW").size(), 1u);
    const simulation::JournalEntry open = Calls("SetupDiGetClassDevsW").front();
    EXPECT_EQ(open["classGuid"],
              GetParam().byInterface ? "{4D1E55B2-F16F-11CF-88CB-001111000030}" : "null");
    EXPECT_EQ(open["enumerator"], "null");
    EXPECT_EQ(open["window"], "null");
    EXPECT_EQ(open["flags"], GetParam().byInterface ? "18" : "6");
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInfo", "index"), ElementsAre("0", "1", "2"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInfo", "structureSize"), ElementsAre("32", "32", "32"));
    EXPECT_THAT(Arguments("SetupDiGetDeviceInstanceIdW", "capacity"), ElementsAre("260", "260"));
    EXPECT_THAT(Arguments("SetupDiGetDeviceInstanceIdW", "required"), ElementsAre("null", "null"));
    EXPECT_THAT(Arguments("CM_Get_DevNode_Status", "device"), ElementsAre("USB\\A", "USB\\B"));
    EXPECT_THAT(Arguments("CM_Get_DevNode_Status", "flags"), ElementsAre("0", "0"));
}

TEST_P(Fill, SortsItsRecordsByTheCodeUnitsOfTheirIds) {
    GiveMachine({L"USB\\C", L"USB\\\uFF5E", L"USB\\\xD83D", L"ACPI\\B", L"USB\\A"});
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(),
                ElementsAre(L"ACPI\\B", L"USB\\A", L"USB\\C", L"USB\\\xD83D", L"USB\\\uFF5E"));
}

TEST_P(Fill, UpperCasesTheLettersAToZOnlyWhateverTheLocale) {
    GiveMachine({L"usb\\vid_1&aAzZ\\`{m\u00FCller\u00FF\u0131\u0161\uFF41"});
    // Where the C runtime has a capital of \u00FC.
    ASSERT_NE(std::setlocale(LC_ALL, "German_Germany.1252"), nullptr);
    EXPECT_TRUE(Run());
    std::setlocale(LC_ALL, "C");
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\VID_1&AAZZ\\`{M\u00FCLLER\u00FF\u0131\u0161\uFF41"));
}

TEST_P(Fill, KeepsTheRecordOfADeviceThatIsKnownAlready) {
    // Also one of the same fill, whose id differs in letter case.
    GiveMachine({L"usb\\a", L"USB\\B", L"usb\\b"});
    NameDevice(0, L"new");
    NameDevice(1, L"first");
    NameDevice(2, L"second");
    devices[L"USB\\A"].name = L"old";
    EXPECT_TRUE(Run());
    ASSERT_THAT(Keys(), ElementsAre(L"USB\\A", L"USB\\B"));
    EXPECT_EQ(devices[L"USB\\A"].name, L"old");
    EXPECT_EQ(devices[L"USB\\B"].name, L"first");
    EXPECT_THAT(Arguments("CM_Get_DevNode_Status", "device"), ElementsAre("USB\\B"));
}

TEST_P(Fill, SkipsADeviceWithoutInstanceId) {
    GiveMachine({L"USB\\" + std::wstring(255, L'A'), L"USB\\" + std::wstring(256, L'B'), L"USB\\C",
                 L"USB\\D"});
    Fail("SetupDiGetDeviceInstanceIdW", 3, ERROR_NOT_FOUND);
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\" + std::wstring(255, L'A'), L"USB\\D"));
    EXPECT_THAT(Log(), ElementsAre(Line("fail to get device instance id, lastError = 122"),
                                   Line("fail to get device instance id, lastError = 1168")));
}

TEST_P(Fill, ReadsEachIdIntoAClearedBuffer) {
    GiveMachine({L"USB\\A", L"USB\\B"});
    Fail("SetupDiGetDeviceInstanceIdW", 2, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"", L"USB\\A"));
}

TEST_P(Fill, LogsErrorNumbersUnsigned) {
    Fail("SetupDiGetClassDevsW", 1, 0xE0000203);
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line("fail to get class devs, lastError = 3758096899")));
}

// --- Removable ---

struct Status {
    ULONG status;
    ULONG problem;
    bool isRemovable;
};

TEST_P(Fill, CallsADeviceRemovableWhoseStatusHasThatBit) {
    GiveMachine({L"USB\\A"});
    for (const auto& [status, problem, isRemovable] :
         {Status{0x4000, 0, true}, Status{0xFFFFFFFF, 0, true}, Status{0xFFFFBFFF, 0, false},
          Status{0, 0x4000, false}, Status{0x4000, 0x4000, true}}) {
        devices.clear();
        machine.devices[0].status = status;
        machine.devices[0].problem = problem;
        EXPECT_TRUE(Run());
        EXPECT_EQ(devices.at(L"USB\\A").isRemovable, isRemovable) << status;
    }
}

CONFIGRET WINAPI FailWithEveryBitSet(ULONG* status, ULONG* problem, DEVINST, ULONG) {
    *status = 0xFFFFFFFF;
    *problem = 0;
    return CR_FAILURE;
}

TEST_P(Fill, CallsNoDeviceRemovableWhoseStatusQueryFailsWhateverItLeavesBehind) {
    GiveMachine({L"USB\\A"});
    const ImportOverride<decltype(::CM_Get_DevNode_Status)> handMade("CM_Get_DevNode_Status",
                                                                     FailWithEveryBitSet);
    EXPECT_TRUE(Run());
    EXPECT_FALSE(devices.at(L"USB\\A").isRemovable);
}

// --- The limit of 500 entries ---

struct Limit {
    std::size_t known;
    std::size_t onMachine;
    bool result;
    std::size_t asked;  ///< Devices that the walk asked for.
    std::size_t entries;
    bool isLogged;
};

TEST_P(Fill, EndsAtTheInsertionOfThe500thEntry) {
    for (const auto& [known, onMachine, result, asked, entries, isLogged] :
         {Limit{0, 499, true, 500, 499, false}, Limit{0, 500, true, 500, 500, true},
          Limit{0, 501, true, 500, 500, true}, Limit{499, 3, true, 1, 500, true},
          // A full map is not even compared with the machine.
          Limit{500, 1, false, 0, 500, true}, Limit{501, 1, false, 0, 501, true}}) {
        SCOPED_TRACE(std::to_string(known) + " and " + std::to_string(onMachine));
        devices.clear();
        timeline.Clear();
        world.journal.Clear();
        Preload(known);
        GiveMachine(onMachine);
        EXPECT_EQ(Run(), result);
        EXPECT_EQ(devices.size(), entries);
        EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInfo"), asked);
        EXPECT_EQ(world.journal.Count("SetupDiGetClassDevsW"), asked == 0 ? 0u : 1u);
        const std::string line = Line("device map size exceeds limit: " + std::to_string(entries));
        EXPECT_EQ(Log(), isLogged ? std::vector<std::string>{line} : std::vector<std::string>{});
    }
}

TEST_P(Fill, LogsACountWithoutGroupsWhateverTheGlobalLocale) {
    const test_support::GroupingLocale grouping;
    Preload(1234);
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line("device map size exceeds limit: 1234")));
}

}  // namespace
