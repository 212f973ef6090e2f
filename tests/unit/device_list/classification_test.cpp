// Which list a device goes to.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "unit/device_list/device_map.h"

namespace {

using namespace device_list_test;
using DeviceReporter::DeviceInfo;

class Classification : public testing::Test {
protected:
    Classification() { map.Add(RemovableDevice()); }

    Classified ListsWith(const std::vector<std::wstring>& instanceIds) {
        for (const std::wstring& instanceId : instanceIds) {
            map.Add(ListedDevice(instanceId));
        }
        return map.Classify();
    }

    DeviceMapOfTest map;
};

TEST_F(Classification, PutsIdsThatBeginWithHidIntoTheHidList) {
    EXPECT_EQ(ListsWith({L"HID\\VID_1\\1", L"HID", L"HIDCLASS\\1"}),
              (Classified{{L"HID", L"HIDCLASS\\1", L"HID\\VID_1\\1"}, {}, {}}));
}

TEST_F(Classification, PutsIdsThatBeginWithBthIntoTheBluetoothList) {
    EXPECT_EQ(ListsWith({L"BTHENUM\\1", L"BTH", L"BTHLE\\1", L"BTH\\MS_1"}),
              (Classified{{}, {L"BTH", L"BTHENUM\\1", L"BTHLE\\1", L"BTH\\MS_1"}, {}}));
}

TEST_F(Classification, PutsEverythingElseIntoTheOtherList) {
    EXPECT_EQ(ListsWith({L"USB\\VID_1\\1", L"PCI\\VEN_1"}),
              (Classified{{}, {}, {L"PCI\\VEN_1", L"USB\\VID_1\\1"}}));
}

TEST_F(Classification, LooksForTheMarkersOnlyAtTheBegin) {
    EXPECT_EQ(
        ListsWith({L"USB\\HID\\1", L" HID\\1", L"USB\\BTH\\1", L"XBTH", L"XHIDBTH"}),
        (Classified{{}, {}, {L" HID\\1", L"USB\\BTH\\1", L"USB\\HID\\1", L"XBTH", L"XHIDBTH"}}));
}

TEST_F(Classification, PrefersTheListOfTheFirstMarker) {
    EXPECT_EQ(ListsWith({L"HIDBTH", L"BTHHID", L"HID\\{00001812}_DEV_VID&BTH", L"BTHENUM\\HID"}),
              (Classified{
                  {L"HIDBTH", L"HID\\{00001812}_DEV_VID&BTH"}, {L"BTHENUM\\HID", L"BTHHID"}, {}}));
}

TEST_F(Classification, ComparesTheMarkersCaseSensitivelyAndWhole) {
    EXPECT_EQ(ListsWith({L"hid\\1", L"Hid\\1", L"bth\\1", L"HI", L"BT", L"B"}),
              (Classified{{}, {}, {L"B", L"BT", L"HI", L"Hid\\1", L"bth\\1", L"hid\\1"}}));
}

TEST_F(Classification, KeepsTheMapsOrderInEachList) {
    EXPECT_EQ(
        ListsWith({L"USB\\B", L"HID\\B", L"BTH\\B", L"USB\\A", L"HID\\A", L"BTH\\A", L"HID\\C"}),
        (Classified{
            {L"HID\\A", L"HID\\B", L"HID\\C"}, {L"BTH\\A", L"BTH\\B"}, {L"USB\\A", L"USB\\B"}}));
}

TEST_F(Classification, OrdersByCodeUnits) {
    EXPECT_EQ(ListsWith({L"USB_1", L"USB\\1", L"USBa", L"USB\u00E9", L"USB\xD83D\xDDA8",
                         L"USB\uFF01", L"USB"}),
              (Classified{{},
                          {},
                          {L"USB", L"USB\\1", L"USB_1", L"USBa", L"USB\u00E9", L"USB\xD83D\xDDA8",
                           L"USB\uFF01"}}));
}

TEST_F(Classification, CopiesWholeRecordsAndLeavesTheMapAlone) {
    DeviceInfo device = ListedDevice(L"USB\\1");
    device.isRemovable = true;
    device.parent = L"the parent";
    device.name = L"the name";
    device.manufacturer = L"the manufacturer";
    device.description = L"the description";
    map.Add(device);
    std::vector<DeviceInfo> hid, bluetooth, other;
    DeviceReporter::ClassifyDevices(map.reporter, hid, bluetooth, other);
    ASSERT_EQ(other.size(), 1u);
    const auto fields = [](const DeviceInfo& info) {
        return std::tie(info.isRemovable, info.instanceId, info.parent, info.name,
                        info.manufacturer, info.className, info.description, info.vendorId,
                        info.containerId);
    };
    EXPECT_EQ(fields(other[0]), fields(device));
    EXPECT_EQ(map.reporter.devices.size(), 2u);
}

TEST_F(Classification, OfAnEmptyMapGivesEmptyLists) {
    map.reporter.devices.clear();
    EXPECT_EQ(map.Classify(), Classified{});
}

}  // namespace
