// How the seven properties of a device are read, and where they are filed.
#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "device_reporter/device_properties.h"
#include "simulation/call_text.h"
#include "simulation/well_known.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using DeviceReporter::DeviceInfo;
using simulation::DeviceProperty;

class PropertyReading : public device_tests::MachineTest {
protected:
    PropertyReading() { machine.devices = {device_tests::PlainDevice(L"USB\\A")}; }

    /// Reads the machine's only device into the record.
    DeviceInfo Read(DeviceInfo record = {}) {
        const HDEVINFO set =
            SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof(device);
        EXPECT_TRUE(SetupDiEnumDeviceInfo(set, 0, &device));
        DeviceReporter::ReadDeviceProperties(set, device, buffer, record);
        SetupDiDestroyDeviceInfoList(set);
        return record;
    }

    void GiveDevice(std::vector<DeviceProperty> properties) {
        machine.devices[0].properties = std::move(properties);
    }

    DeviceReporter::PropertyBuffer buffer;
};

TEST_F(PropertyReading, AsksForSevenKeysInTheirOrder) {
    Read();
    EXPECT_THAT(Arguments("SetupDiGetDevicePropertyW", "key"),
                ElementsAre("{4340A6C5-93FA-4706-972C-7B648008A5A7} 8",
                            "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 9",
                            "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 13",
                            "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 2",
                            "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 14",
                            "{B725F130-47EF-101A-A5F1-02608C9EEBAC} 10",
                            "{8C7ED206-3F8A-4827-B3AB-AE9E1FAEFC6C} 2"));
}

TEST_F(PropertyReading, OffersTheBufferOf4096BytesToAllReads) {
    Read();
    const std::vector<simulation::JournalEntry> calls = Calls("SetupDiGetDevicePropertyW");
    ASSERT_EQ(calls.size(), 7u);
    for (const simulation::JournalEntry& call : calls) {
        EXPECT_EQ(call["device"], "USB\\A");
        EXPECT_EQ(call["buffer"], simulation::CallText(static_cast<const void*>(buffer)));
        EXPECT_EQ(call["capacity"], "4096");
        EXPECT_EQ(call["required"], "null");
        EXPECT_EQ(call["flags"], "0");
    }
}

std::vector<bool> wasClear;

BOOL WINAPI FillTheBuffer(HDEVINFO, SP_DEVINFO_DATA*, const DEVPROPKEY*, DEVPROPTYPE* type,
                          BYTE* buffer, DWORD size, DWORD*, DWORD) {
    bool clear = true;
    for (DWORD i = 0; i < size; ++i) {
        clear = clear && buffer[i] == 0;
    }
    wasClear.push_back(clear);
    std::memset(buffer, 'x', size);
    *type = DEVPROP_TYPE_EMPTY;
    // Half of the reads fail and leave their traces all the same.
    return wasClear.size() % 2 == 0 ? FALSE : TRUE;
}

TEST_F(PropertyReading, ClearsTheWholeBufferBeforeEachRead) {
    const ImportOverride<decltype(::SetupDiGetDevicePropertyW)> handMade(
        "SetupDiGetDevicePropertyW", FillTheBuffer);
    wasClear.clear();
    Read();
    Read();
    EXPECT_EQ(wasClear, std::vector<bool>(14, true));
}

TEST_F(PropertyReading, ConvertsEachPropertyByItsOwnType) {
    GiveDevice({DeviceProperty::UInt32(simulation::kParentKey, 0),
                DeviceProperty::StringList(simulation::kClassKey, {L"A", L"B", L"A"}),
                DeviceProperty::Guid(simulation::kManufacturerKey, simulation::kHidInterface),
                DeviceProperty::Raw(simulation::kDeviceDescKey, DEVPROP_TYPE_UINT64,
                                    std::vector<BYTE>(8, 'x')),
                DeviceProperty::String(simulation::kContainerIdKey, L"not a GUID")});
    const DeviceInfo record = Read();
    EXPECT_EQ(record.parent, L"0");
    EXPECT_EQ(record.className, L"A\nB");
    EXPECT_EQ(record.manufacturer, L"{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_EQ(record.description, L"");
    EXPECT_EQ(record.containerId, L"not a GUID");
    EXPECT_EQ(record.name, L"");
}

TEST_F(PropertyReading, TakesWhatFitsIntoTheBuffer) {
    const std::wstring text(2048, L'x');
    const auto* const bytes = reinterpret_cast<const BYTE*>(text.data());
    // Neither has a terminator.
    GiveDevice({DeviceProperty::Raw(simulation::kClassKey, DEVPROP_TYPE_STRING,
                                    {bytes, bytes + text.size() * sizeof(wchar_t)}),
                DeviceProperty::Raw(simulation::kManufacturerKey, DEVPROP_TYPE_STRING,
                                    {bytes, bytes + 3 * sizeof(wchar_t)}),
                DeviceProperty::String(simulation::kDeviceDescKey, text)});
    const DeviceInfo record = Read();
    EXPECT_EQ(record.className, text);
    EXPECT_EQ(record.manufacturer, L"xxx");
    EXPECT_EQ(record.description, L"");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PropertyReading, NamesADeviceByItsFriendlyNameThenByItsName) {
    for (const auto& [friendlyName, name, merged] :
         {std::tuple(L"Foo", L"Bar", L"Foo\nBar"), std::tuple(L"Foo", L"Foo", L"Foo"),
          std::tuple(L"My Foo", L"Foo", L"My Foo"), std::tuple(L"Foo", L"My Foo", L"Foo\nMy Foo"),
          std::tuple(L"", L"Bar", L"Bar")}) {
        GiveDevice({DeviceProperty::String(simulation::kNameKey, name),
                    DeviceProperty::String(simulation::kFriendlyNameKey, friendlyName)});
        EXPECT_EQ(Read().name, merged);
    }
}

// --- Where they are filed ---

using FieldOfDevice = std::wstring DeviceInfo::*;

constexpr FieldOfDevice kAllFields[] = {&DeviceInfo::instanceId, &DeviceInfo::parent,
                                        &DeviceInfo::name,       &DeviceInfo::manufacturer,
                                        &DeviceInfo::className,  &DeviceInfo::description,
                                        &DeviceInfo::vendorId,   &DeviceInfo::containerId};

struct Filing {
    DEVPROPKEY key;
    FieldOfDevice target;
    bool merges;
};

std::vector<Filing> Filings() {
    return {{simulation::kParentKey, &DeviceInfo::parent, false},
            {simulation::kClassKey, &DeviceInfo::className, false},
            {simulation::kManufacturerKey, &DeviceInfo::manufacturer, false},
            {simulation::kDeviceDescKey, &DeviceInfo::description, false},
            {simulation::kContainerIdKey, &DeviceInfo::containerId, false},
            {simulation::kFriendlyNameKey, &DeviceInfo::name, true},
            {simulation::kNameKey, &DeviceInfo::name, true}};
}

/// A record whose every text is "old".
DeviceInfo FilledRecord() {
    DeviceInfo record;
    for (FieldOfDevice field : kAllFields) {
        record.*field = L"old";
    }
    return record;
}

TEST_F(PropertyReading, ReplacesOrMergesOneFieldAndTouchesNoOther) {
    for (const auto& [key, target, merges] : Filings()) {
        SCOPED_TRACE(key.pid);
        for (const std::wstring text : {L"new", L"ol", L""}) {
            GiveDevice({DeviceProperty::String(key, text)});
            const DeviceInfo record = Read(FilledRecord());
            const std::wstring merged = text == L"new" ? L"old\nnew" : L"old";
            for (FieldOfDevice field : kAllFields) {
                EXPECT_EQ(record.*field, field != target ? L"old" : merges ? merged : text);
            }
            EXPECT_FALSE(record.isRemovable);
        }
    }
}

}  // namespace
