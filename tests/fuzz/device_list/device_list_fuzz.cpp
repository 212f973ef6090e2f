// Lists of devices with any texts, on their way out as chunks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "support/strict_json.h"
#include "support/utf8_sequence.h"
#include "unit/device_list/chunk_model.h"

namespace {

using DeviceReporter::DeviceInfo;
using fuzz::Require;
using fuzz::RequireSame;
using test_support::Json;

constexpr std::size_t kMaxCost = 1020;
constexpr std::size_t kSeparatorCost = 5;
constexpr std::size_t kMaxUnits = 32;

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

/// UTF-16 units of a text that is known to be UTF-8.
std::size_t UnitCount(std::string_view text) {
    std::size_t units = 0;
    while (!text.empty()) {
        const std::size_t length = test_support::Utf8SequenceLength(text);
        units += length == 4 ? 2 : 1;
        text.remove_prefix(length);
    }
    return units;
}

void CheckObject(const Json& object, const DeviceInfo& device, bool withName) {
    const std::pair<const char*, std::wstring DeviceInfo::*> kKeys[] = {
        {"class", &DeviceInfo::className},
        {"desc", &DeviceInfo::description},
        {"device", &DeviceInfo::vendorId},
        {"maker", &DeviceInfo::manufacturer},
        {"name", &DeviceInfo::name}};
    RequireSame(object.members.size(), withName ? 5u : 4u, "all keys are there and no other");
    for (std::size_t i = 0; i < object.members.size(); ++i) {
        const auto& [key, value] = object.members[i];
        RequireSame(key, kKeys[i].first, "the keys are sorted");
        Require(value.kind == Json::Kind::String, "every value is a text", key);
        Require(UnitCount(value.text) <= kMaxUnits, "no text is above 32 units", key, value.text);
        RequireSame(value.text, device_list_test::ExpectedText(device.*kKeys[i].second),
                    "the text is the field's beginning");
    }
}

/// What the objects of a chunk cost together, from the length of the chunk.
std::size_t CostOf(const std::string& chunk, std::size_t objects) {
    constexpr std::size_t kBrackets = 2;
    return objects == 0 ? 0 : chunk.size() - kBrackets - (objects - 1) + objects * kSeparatorCost;
}

std::size_t CostAlone(const DeviceInfo& device, bool withName) {
    return CostOf(device_list_test::ExpectedChunks({device}, withName).back(), 1);
}

void CheckList(const DeviceList& list) {
    const std::vector<std::string> chunks =
        DeviceReporter::SerializeDeviceList(list.devices, list.withName);
    std::size_t next = 0;
    std::size_t previousCost = kMaxCost;
    for (const std::string& chunk : chunks) {
        const Json array = test_support::ParseCompactJson(chunk);
        Require(array.kind == Json::Kind::Array, "a chunk is an array", chunk);
        const std::size_t cost = CostOf(chunk, array.items.size());
        Require(cost <= kMaxCost || array.items.size() == 1,
                "no chunk of several devices is above the limit", cost);
        Require(next + array.items.size() <= list.devices.size(), "no device is made up", chunk);
        if (array.items.empty()) {
            Require(&chunk == &chunks.front(), "only the first chunk is ever empty", chunk);
        } else {
            const std::size_t first = CostAlone(list.devices[next], list.withName);
            Require(previousCost + first > kMaxCost, "no chunk ends before it is full", first);
        }
        for (const Json& object : array.items) {
            CheckObject(object, list.devices[next++], list.withName);
        }
        previousCost = cost;
    }
    RequireSame(next, list.devices.size(), "every device is told");
    RequireSame(chunks, device_list_test::ExpectedChunks(list.devices, list.withName),
                "the chunks are those of the model");
}

TEST(DeviceListFuzz, FillsChunksThatParseBackUpToTheLimit) {
    fuzz::TryInputs("device lists", 60000, MakeList, CheckList);
}

}  // namespace
