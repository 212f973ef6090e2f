// One device as JSON: keys, their order, where each value comes from.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::SerializeDeviceList;
using Chunks = std::vector<std::string>;

/// Every field has a text of its own, so that no two can be mixed up.
DeviceInfo Distinct() {
    DeviceInfo device;
    device.isRemovable = true;
    device.instanceId = L"the id";
    device.parent = L"the parent";
    device.name = L"the name";
    device.manufacturer = L"the manufacturer";
    device.className = L"the class";
    device.description = L"the description";
    device.vendorId = L"the vendor";
    device.containerId = L"the container";
    return device;
}

TEST(DeviceObject, HasFiveKeysInSortedOrderWithoutBlanks) {
    EXPECT_EQ(SerializeDeviceList({Distinct()}, /*withName=*/true),
              Chunks{R"([{"class":"the class","desc":"the description","device":"the vendor",)"
                     R"("maker":"the manufacturer","name":"the name"}])"});
}

TEST(DeviceObject, HasNoNameKeyWithoutNames) {
    EXPECT_EQ(SerializeDeviceList({Distinct()}, /*withName=*/false),
              Chunks{R"([{"class":"the class","desc":"the description","device":"the vendor",)"
                     R"("maker":"the manufacturer"}])"});
}

TEST(DeviceObject, KeepsEmptyTexts) {
    EXPECT_EQ(SerializeDeviceList({DeviceInfo{}}, /*withName=*/true),
              Chunks{R"([{"class":"","desc":"","device":"","maker":"","name":""}])"});
    EXPECT_EQ(SerializeDeviceList({DeviceInfo{}}, /*withName=*/false),
              Chunks{R"([{"class":"","desc":"","device":"","maker":""}])"});
}

TEST(DeviceObject, WritesNonAsciiTextsAsUtf8NotAsEscapes) {
    DeviceInfo device;
    device.vendorId = L"\u00E9";
    device.className = L"\u00DF";
    device.description = L"\u6771\u4EAC";
    device.manufacturer = L"\xD83D\xDDA8";  // U+1F5A8, a pair.
    device.name = L"\u0416";
    EXPECT_EQ(SerializeDeviceList({device}, /*withName=*/true),
              Chunks{"[{\"class\":\"\xC3\x9F\",\"desc\":\"\xE6\x9D\xB1\xE4\xBA\xAC\","
                     "\"device\":\"\xC3\xA9\",\"maker\":\"\xF0\x9F\x96\xA8\","
                     "\"name\":\"\xD0\x96\"}]"});
}

TEST(DeviceObject, EscapesWhatJsonDemandsAndNothingElse) {
    DeviceInfo device;
    device.vendorId = L"\"\\/";
    device.className = L"\b\f\n\r\t";
    device.description = L"\x01\x1F";
    device.manufacturer = L"\x7F<&'";
    device.name = L"Friendly\nBus";
    EXPECT_EQ(SerializeDeviceList({device}, /*withName=*/true),
              Chunks{R"([{"class":"\b\f\n\r\t","desc":"\u0001\u001f","device":"\"\\/",)"
                     "\"maker\":\"\x7F<&'\","
                     R"("name":"Friendly\nBus"}])"});
}

TEST(DeviceObject, FollowsTheOtherAfterACommaInTheListsOrder) {
    DeviceInfo second = Distinct();
    second.vendorId = L"a second";
    EXPECT_EQ(SerializeDeviceList({Distinct(), second, DeviceInfo{}}, /*withName=*/false),
              Chunks{R"([{"class":"the class","desc":"the description","device":"the vendor",)"
                     R"("maker":"the manufacturer"},)"
                     R"({"class":"the class","desc":"the description","device":"a second",)"
                     R"("maker":"the manufacturer"},)"
                     R"({"class":"","desc":"","device":"","maker":""}])"});
}

TEST(DeviceObject, IsListedOncePerRecordEvenWhenRecordsAreEqual) {
    EXPECT_EQ(SerializeDeviceList({DeviceInfo{}, DeviceInfo{}}, /*withName=*/false),
              Chunks{R"([{"class":"","desc":"","device":"","maker":""},)"
                     R"({"class":"","desc":"","device":"","maker":""}])"});
}

TEST(DeviceObject, OfAnEmptyListIsNotThereAtAll) {
    EXPECT_TRUE(SerializeDeviceList({}, /*withName=*/true).empty());
    EXPECT_TRUE(SerializeDeviceList({}, /*withName=*/false).empty());
}

}  // namespace
