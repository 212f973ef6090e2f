#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "device_reporter/device_properties.h"
#include "simulation/well_known.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::SetDeviceProperty;
using Field = std::wstring DeviceInfo::*;

constexpr Field kAllFields[] = {&DeviceInfo::instanceId, &DeviceInfo::parent,
                                &DeviceInfo::name,       &DeviceInfo::manufacturer,
                                &DeviceInfo::className,  &DeviceInfo::description,
                                &DeviceInfo::vendorId,   &DeviceInfo::containerId};

/// The keys that replace a field's text.
std::vector<std::pair<DEVPROPKEY, Field>> ReplacingKeys() {
    return {{simulation::kParentKey, &DeviceInfo::parent},
            {simulation::kClassKey, &DeviceInfo::className},
            {simulation::kManufacturerKey, &DeviceInfo::manufacturer},
            {simulation::kDeviceDescKey, &DeviceInfo::description},
            {simulation::kContainerIdKey, &DeviceInfo::containerId}};
}

std::vector<std::pair<DEVPROPKEY, Field>> AllKeys() {
    auto keys = ReplacingKeys();
    keys.emplace_back(simulation::kFriendlyNameKey, &DeviceInfo::name);
    keys.emplace_back(simulation::kNameKey, &DeviceInfo::name);
    return keys;
}

/// A record whose every text is "old".
DeviceInfo FilledRecord() {
    DeviceInfo record;
    for (Field field : kAllFields) {
        record.*field = L"old";
    }
    return record;
}

TEST(PropertyFiling, PutsEachPropertyIntoItsFieldAndNoOther) {
    for (const auto& [key, target] : AllKeys()) {
        DeviceInfo record;
        SetDeviceProperty(record, key, L"text");
        for (Field field : kAllFields) {
            EXPECT_EQ(record.*field, field == target ? L"text" : L"") << "pid " << key.pid;
        }
        EXPECT_FALSE(record.isRemovable);
    }
}

TEST(PropertyFiling, ReplacesWhatWasThere) {
    for (const auto& [key, target] : ReplacingKeys()) {
        DeviceInfo record = FilledRecord();
        SetDeviceProperty(record, key, L"new");
        EXPECT_EQ(record.*target, L"new");
        SetDeviceProperty(record, key, L"");
        EXPECT_EQ(record.*target, L"") << "pid " << key.pid;
    }
}

TEST(PropertyFiling, MergesFriendlyNameAndName) {
    for (const DEVPROPKEY& key : {simulation::kFriendlyNameKey, simulation::kNameKey}) {
        DeviceInfo record = FilledRecord();
        SetDeviceProperty(record, key, L"new");
        EXPECT_EQ(record.name, L"old\nnew");
        SetDeviceProperty(record, key, L"ol");
        EXPECT_EQ(record.name, L"old\nnew");
        SetDeviceProperty(record, key, L"");
        EXPECT_EQ(record.name, L"old\nnew");
    }
}

TEST(PropertyFiling, IgnoresKeysWhoseSetOrNumberDiffers) {
    for (const auto& [key, target] : AllKeys()) {
        DEVPROPKEY otherNumber = key;
        otherNumber.pid += 100;
        DEVPROPKEY otherSet = key;
        otherSet.fmtid.Data4[7] = static_cast<unsigned char>(otherSet.fmtid.Data4[7] ^ 1);
        for (const DEVPROPKEY& stranger : {otherNumber, otherSet}) {
            DeviceInfo record = FilledRecord();
            SetDeviceProperty(record, stranger, L"new");
            for (Field field : kAllFields) {
                EXPECT_EQ(record.*field, L"old") << "pid " << stranger.pid;
            }
        }
    }
}

TEST(PropertyFiling, IgnoresTheNumberOfOneSetInAnother) {
    // The number of a class name, but in the set of the parent.
    DeviceInfo record;
    SetDeviceProperty(record, {simulation::kParentKey.fmtid, 9}, L"text");
    SetDeviceProperty(record, {simulation::kClassKey.fmtid, 8}, L"text");
    SetDeviceProperty(record, {simulation::kContainerIdKey.fmtid, 13}, L"text");
    for (Field field : kAllFields) {
        EXPECT_EQ(record.*field, L"");
    }
}

}  // namespace
