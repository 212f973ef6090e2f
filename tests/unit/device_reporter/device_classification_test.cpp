// Which devices are listed, and in which list.
#include "device_reporter/device_classification.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "device_reporter/report_device_info.h"

namespace {

using DeviceReporter::DeviceInfo;
using Ids = std::vector<std::wstring>;

constexpr wchar_t kShared[] = L"{11111111-0000-0000-0000-00000000000A}";

/// A device that is listed as soon as a removable device shares its container.
DeviceInfo Listed(const std::wstring& instanceId) {
    DeviceInfo device;
    device.instanceId = instanceId;
    device.className = L"Mouse";
    device.vendorId = L"VID_1";
    device.containerId = kShared;
    return device;
}

/// A removable device that is not listed itself.
DeviceInfo Removable(const std::wstring& instanceId, const std::wstring& containerId = kShared) {
    DeviceInfo device;
    device.instanceId = instanceId;
    device.isRemovable = true;
    device.containerId = containerId;
    return device;
}

/// The three lists.
struct Classified {
    std::vector<DeviceInfo> hid;
    std::vector<DeviceInfo> bluetooth;
    std::vector<DeviceInfo> other;
};

Classified Classify(const std::vector<DeviceInfo>& devices) {
    DeviceReporter::ReportDeviceInfo reporter;
    for (const DeviceInfo& device : devices) {
        reporter.devices[device.instanceId] = device;
    }
    Classified lists;
    ClassifyDevices(reporter, lists.hid, lists.bluetooth, lists.other);
    EXPECT_EQ(reporter.devices.size(), devices.size());
    return lists;
}

// --- Which list ---

struct Sorted {
    const char* about;
    Ids ids;
    Ids hid{};
    Ids bluetooth{};
    Ids other{};
};

Ids IdsOf(const std::vector<DeviceInfo>& list) {
    Ids ids;
    for (const DeviceInfo& device : list) {
        ids.push_back(device.instanceId);
    }
    return ids;
}

TEST(Classification, GoesByTheBeginOfTheIdAndKeepsTheMapsOrder) {
    for (const Sorted& sorted : {
             Sorted{"the markers",
                    {L"HID\\1", L"HID", L"HIDX", L"BTHENUM\\1", L"BTH", L"BTHLE\\1"},
                    {L"HID", L"HIDX", L"HID\\1"},
                    {L"BTH", L"BTHENUM\\1", L"BTHLE\\1"}},
             Sorted{"not at the begin",
                    {L"USB\\HID\\1", L" HID\\1", L"USB\\BTH\\1", L"XHIDBTH"},
                    {},
                    {},
                    {L" HID\\1", L"USB\\BTH\\1", L"USB\\HID\\1", L"XHIDBTH"}},
             Sorted{"both",
                    {L"HIDBTH", L"BTHHID", L"HID\\{0}_DEV_VID&BTH", L"BTHENUM\\HID"},
                    {L"HIDBTH", L"HID\\{0}_DEV_VID&BTH"},
                    {L"BTHENUM\\HID", L"BTHHID"}},
             Sorted{"letter case and parts",
                    {L"hid\\1", L"Hid\\1", L"bth\\1", L"HI", L"BT", L"B"},
                    {},
                    {},
                    {L"B", L"BT", L"HI", L"Hid\\1", L"bth\\1", L"hid\\1"}},
             Sorted{"code units",
                    {L"USB\uFF01", L"USB\xD83D\xDDA8", L"USB\u00E9", L"USB\\1", L"USB"},
                    {},
                    {},
                    {L"USB", L"USB\\1", L"USB\u00E9", L"USB\xD83D\xDDA8", L"USB\uFF01"}},
             Sorted{"nothing", {}},
         }) {
        SCOPED_TRACE(sorted.about);
        std::vector<DeviceInfo> devices{Removable(L"SWD\\REMOVABLE")};
        for (const std::wstring& id : sorted.ids) {
            devices.push_back(Listed(id));
        }
        const Classified lists = Classify(devices);
        EXPECT_EQ(IdsOf(lists.hid), sorted.hid);
        EXPECT_EQ(IdsOf(lists.bluetooth), sorted.bluetooth);
        EXPECT_EQ(IdsOf(lists.other), sorted.other);
    }
}

TEST(Classification, CopiesWholeRecords) {
    // A removable device is listed itself.
    const DeviceInfo device{true,         L"USB\\1",      L"parent", L"name",    L"manufacturer",
                            L"the class", L"description", L"VID_1",  L"anything"};
    const Classified lists = Classify({device});
    ASSERT_EQ(lists.other.size(), 1u);
    const auto fields = [](const DeviceInfo& info) {
        return std::tie(info.isRemovable, info.instanceId, info.parent, info.name,
                        info.manufacturer, info.className, info.description, info.vendorId,
                        info.containerId);
    };
    EXPECT_EQ(fields(lists.other[0]), fields(device));
}

// --- Which devices ---

bool IsListed(const DeviceInfo& candidate, const std::vector<DeviceInfo>& removables) {
    std::vector<DeviceInfo> devices = removables;
    devices.push_back(candidate);
    return !Classify(devices).other.empty();
}

TEST(SkipRules, WantAContainerWithARemovableDevice) {
    const DeviceInfo device = Listed(L"USB\\1");
    EXPECT_FALSE(IsListed(device, {}));
    EXPECT_FALSE(IsListed(device, {Listed(L"HID\\1"), Listed(L"BTH\\1")}));
    EXPECT_TRUE(IsListed(device, {Removable(L"SWD\\1")}));
    // Wherever in the map, whatever becomes of it itself, and beside others.
    EXPECT_TRUE(IsListed(device, {Removable(L"ZZZ")}));
    DeviceInfo system = Removable(L"SWD\\1");
    system.className = L"System";
    EXPECT_TRUE(IsListed(device, {system}));
    EXPECT_TRUE(IsListed(device, {Removable(L"A\\1", L"another"), Removable(L"SWD\\1")}));
    EXPECT_TRUE(IsListed(device, {Removable(L"A\\1"), Removable(L"SWD\\1", L"another")}));
}

TEST(SkipRules, CompareContainersAsTheyAre) {
    DeviceInfo device = Listed(L"USB\\1");
    for (const wchar_t* containerId :
         {L"{11111111-0000-0000-0000-00000000000a}", L"{11111111-0000-0000-0000-00000000000A} ",
          L"{11111111-0000-0000-0000-00000000000}", L"another", L""}) {
        EXPECT_FALSE(IsListed(device, {Removable(L"SWD\\1", containerId)}));
    }
    device.containerId.clear();
    EXPECT_FALSE(IsListed(device, {Removable(L"SWD\\1")}));
    EXPECT_TRUE(IsListed(device, {Removable(L"SWD\\1", L"")}));
}

TEST(SkipRules, WantAVendorIdAndAClassWithoutTheWordSystem) {
    DeviceInfo device = Listed(L"USB\\1");
    device.vendorId.clear();
    EXPECT_FALSE(IsListed(device, {Removable(L"SWD\\1")}));
    // The word does not matter elsewhere.
    device.name = device.description = device.manufacturer = device.vendorId = L"System";
    EXPECT_TRUE(IsListed(device, {Removable(L"SWD\\1")}));
    for (const wchar_t* className :
         {L"", L"System", L"SystemDevice", L"MySystem", L"A System Device", L"SSystem"}) {
        device.className = className;
        EXPECT_FALSE(IsListed(device, {Removable(L"SWD\\1")})) << className;
    }
    for (const wchar_t* className : {L"system", L"SYSTEM", L"Syste", L"Sys tem"}) {
        device.className = className;
        EXPECT_TRUE(IsListed(device, {Removable(L"SWD\\1")})) << className;
    }
}

}  // namespace
