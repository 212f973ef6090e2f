#include "simulation/device_property.h"

#include <gtest/gtest.h>

#include "simulation/well_known.h"

namespace simulation {
namespace {

using Bytes = std::vector<BYTE>;

TEST(DeviceProperty, StoresTextsWithTheirTerminator) {
    const DeviceProperty property = DeviceProperty::String(kClassKey, L"A\u00FC");
    EXPECT_EQ(property.type, DEVPROP_TYPE_STRING);
    EXPECT_EQ(property.bytes, (Bytes{'A', 0, 0xFC, 0, 0, 0}));
}

TEST(DeviceProperty, EndsListsWithATerminatorOfTheirOwn) {
    const DeviceProperty property = DeviceProperty::StringList(kHardwareIdsKey, {L"A", L"B"});
    EXPECT_EQ(property.type, static_cast<DEVPROPTYPE>(0x2012));
    EXPECT_EQ(property.bytes, (Bytes{'A', 0, 0, 0, 'B', 0, 0, 0, 0, 0}));
}

TEST(DeviceProperty, StoresNumbersLowByteFirst) {
    EXPECT_EQ(DeviceProperty::UInt32(kClassKey, 0x01020304).bytes, (Bytes{4, 3, 2, 1}));
}

TEST(DeviceProperty, StoresGuidsAsTheSystemDoes) {
    const DeviceProperty property = DeviceProperty::Guid(kContainerIdKey, kHidInterface);
    EXPECT_EQ(property.type, DEVPROP_TYPE_GUID);
    EXPECT_EQ(property.bytes, (Bytes{0xB2, 0x55, 0x1E, 0x4D, 0x6F, 0xF1, 0xCF, 0x11, 0x88, 0xCB,
                                     0x00, 0x11, 0x11, 0x00, 0x00, 0x30}));
}

TEST(DeviceProperty, TellsKeysOfOneSetApart) {
    EXPECT_TRUE(SameKey(kClassKey, DEVPROPKEY{kDevicePropertySet, 9}));
    EXPECT_FALSE(SameKey(kClassKey, kManufacturerKey));
    EXPECT_FALSE(SameKey(kDeviceDescKey, kContainerIdKey));
    EXPECT_EQ(KeyText(kClassKey), "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 9");
}

}  // namespace
}  // namespace simulation
