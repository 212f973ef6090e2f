// Lists of devices with any texts, on their way out as chunks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "support/device_list_model.h"

namespace {

using DeviceReporter::DeviceInfo;
using fuzz::RequireSame;

struct DeviceList {
    std::vector<DeviceInfo> devices;
    bool withName = false;
};

void PrintTo(const DeviceList& list, std::ostream* stream) {
    *stream << list.devices.size() << " devices " << (list.withName ? "with" : "without")
            << " names:";
    for (const DeviceInfo& device : list.devices) {
        *stream << "\n    class " << testing::PrintToString(device.className) << ", desc "
                << testing::PrintToString(device.description) << ", device "
                << testing::PrintToString(device.vendorId) << ", maker "
                << testing::PrintToString(device.manufacturer) << ", name "
                << testing::PrintToString(device.name);
    }
}

DeviceInfo MakeDevice(fuzz::Random& random) {
    DeviceInfo device;
    if (random.OneIn(16)) {
        // As long as it gets when written: this record alone is above the limit.
        const auto unit = static_cast<wchar_t>(random.Between(1, 0x1F));
        for (std::wstring DeviceInfo::*field :
             {&DeviceInfo::vendorId, &DeviceInfo::className, &DeviceInfo::description,
              &DeviceInfo::manufacturer, &DeviceInfo::name}) {
            device.*field = std::wstring(random.Between(28, 33), unit);
        }
        return device;
    }
    device.vendorId = fuzz::MakeText(random, 40);
    device.className = fuzz::MakeText(random, 40);
    device.description = fuzz::MakeText(random, 80);
    device.manufacturer = fuzz::MakeText(random, 80);
    device.name = fuzz::MakeText(random, 80);
    return device;
}

DeviceList MakeList(fuzz::Random& random) {
    DeviceList list;
    list.withName = !random.OneIn(4);
    // Mostly few: what a chunk holds and what follows it is seen with a handful.
    list.devices.resize(random.Below(random.OneIn(200) ? 60 : 5));
    for (DeviceInfo& device : list.devices) {
        device = MakeDevice(random);
    }
    return list;
}

void CheckList(const DeviceList& list) {
    RequireSame(DeviceReporter::SerializeDeviceList(list.devices, list.withName),
                test_support::ExpectedChunks(list.devices, list.withName),
                "the chunks are those of the model");
}

TEST(DeviceListFuzz, FillsChunksUpToTheLimit) {
    fuzz::TryInputs("device lists", 60000, MakeList, CheckList);
}

}  // namespace
