// Which devices are left out.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "unit/device_list/device_map.h"

namespace {

using namespace device_list_test;
using DeviceReporter::DeviceInfo;

constexpr wchar_t kId[] = L"USB\\VID_1\\1";

class SkipRules : public testing::Test {
protected:
    /// Whether the device is listed among others.
    bool IsListed(const DeviceInfo& candidate) {
        map.Add(candidate);
        return !map.Classify().other.empty();
    }

    DeviceMapOfTest map;
    DeviceInfo device = ListedDevice(kId);
};

TEST_F(SkipRules, NothingIsListedWithoutARemovableDevice) {
    map.Add(ListedDevice(L"HID\\1"));
    map.Add(ListedDevice(L"BTH\\1"));
    EXPECT_FALSE(IsListed(device));
    EXPECT_EQ(map.Classify(), Classified{});
}

TEST_F(SkipRules, ADeviceInTheContainerOfARemovableOneIsListed) {
    map.Add(RemovableDevice());
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, ARemovableDeviceIsListedItself) {
    device.isRemovable = true;
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, ADeviceInAnotherContainerIsNotListed) {
    map.Add(RemovableDevice());
    device.containerId = kOtherContainer;
    EXPECT_FALSE(IsListed(device));
}

TEST_F(SkipRules, AContainerThatDiffersInLetterCaseOrLengthIsAnotherOne) {
    DeviceInfo removable = RemovableDevice();
    removable.containerId = L"{ABCDEF00-0000-0000-0000-000000000001}";
    map.Add(removable);
    for (const wchar_t* containerId :
         {L"{abcdef00-0000-0000-0000-000000000001}", L"{ABCDEF00-0000-0000-0000-000000000001} ",
          L"{ABCDEF00-0000-0000-0000-00000000000}", L""}) {
        device.containerId = containerId;
        EXPECT_FALSE(IsListed(device));
    }
}

TEST_F(SkipRules, AnEmptyContainerMatchesAnEmptyOneLikeAnyOther) {
    DeviceInfo removable = RemovableDevice();
    removable.containerId.clear();
    map.Add(removable);
    EXPECT_FALSE(IsListed(device));
    device.containerId.clear();
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, TheContainerOfARemovableDeviceCountsEvenIfThatDeviceIsLeftOut) {
    DeviceInfo removable = RemovableDevice();
    removable.className = L"System";
    map.Add(removable);
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, ARemovableDeviceFurtherDownInTheMapCounts) {
    DeviceInfo removable = RemovableDevice();
    removable.instanceId = L"ZZZ";
    map.Add(removable);
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, EachRemovableDeviceAddsItsContainer) {
    DeviceInfo second = RemovableDevice();
    second.instanceId = L"SWD\\SECOND";
    second.containerId = kOtherContainer;
    map.Add(RemovableDevice());
    map.Add(second);
    EXPECT_TRUE(IsListed(device));
    device.containerId = kOtherContainer;
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, ADeviceWithoutVendorIdIsNotListed) {
    map.Add(RemovableDevice());
    device.vendorId.clear();
    EXPECT_FALSE(IsListed(device));
}

TEST_F(SkipRules, ADeviceWithoutClassIsNotListed) {
    map.Add(RemovableDevice());
    device.className.clear();
    EXPECT_FALSE(IsListed(device));
}

TEST_F(SkipRules, ADeviceWithSystemAnywhereInItsClassIsNotListed) {
    map.Add(RemovableDevice());
    for (const wchar_t* className :
         {L"System", L"SystemDevice", L"MySystem", L"A System Device", L"SSystem"}) {
        device.className = className;
        EXPECT_FALSE(IsListed(device)) << className;
    }
}

TEST_F(SkipRules, TheWordSystemIsCaseSensitiveAndHasToBeWhole) {
    map.Add(RemovableDevice());
    for (const wchar_t* className : {L"system", L"SYSTEM", L"Syste", L"Sys tem"}) {
        device.className = className;
        EXPECT_TRUE(IsListed(device)) << className;
    }
}

TEST_F(SkipRules, SystemInOtherTextsDoesNotMatter) {
    map.Add(RemovableDevice());
    device.name = device.description = device.manufacturer = device.vendorId = L"System";
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, EmptyTextsOfOtherKindsDoNotMatter) {
    map.Add(RemovableDevice());
    ASSERT_TRUE(device.name.empty() && device.description.empty() && device.manufacturer.empty() &&
                device.parent.empty());
    EXPECT_TRUE(IsListed(device));
}

TEST_F(SkipRules, OneReasonIsEnoughInEveryCombination) {
    const std::function<void(DeviceInfo&)> reasons[] = {
        [](DeviceInfo& info) { info.vendorId.clear(); },
        [](DeviceInfo& info) { info.containerId = kOtherContainer; },
        [](DeviceInfo& info) { info.className.clear(); },
        [](DeviceInfo& info) { info.className += L"System"; },
    };
    map.Add(RemovableDevice());
    for (unsigned combination = 0; combination < 16; ++combination) {
        DeviceInfo changed = device;
        for (unsigned i = 0; i < 4; ++i) {
            if ((combination & 1u << i) != 0) {
                reasons[i](changed);
            }
        }
        EXPECT_EQ(IsListed(changed), combination == 0) << combination;
    }
}

}  // namespace
