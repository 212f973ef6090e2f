#include "device_reporter/device_chunks.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "util/string_convert.h"

namespace DeviceReporter {

namespace {

constexpr std::size_t kMaxFieldUnits = 32;
constexpr std::size_t kMaxChunkSize = 1020;
/// What a device costs beyond its own text: room for the separators.
constexpr std::size_t kSeparatorCost = 5;

std::string MakeField(const std::wstring& text) {
    return WStringToUtf8(text.substr(0, kMaxFieldUnits));
}

std::string SerializeDevice(const DeviceInfo& device, bool withName) {
    nlohmann::json object;
    object["device"] = MakeField(device.vendorId);
    object["class"] = MakeField(device.className);
    object["desc"] = MakeField(device.description);
    object["maker"] = MakeField(device.manufacturer);
    if (withName) {
        object["name"] = MakeField(device.name);
    }
    return object.dump();
}

}  // namespace

std::vector<std::string> SerializeDeviceList(const std::vector<DeviceInfo>& devices,
                                             bool withName) {
    std::vector<std::string> chunks;
    // An array's text is that of its elements with commas between them, so that each device is
    // serialised once, for its cost and for its chunk.
    std::string openChunk;
    std::size_t size = 0;
    const auto closeChunk = [&] {
        chunks.push_back("[" + openChunk + "]");
        openChunk.clear();
        size = 0;
    };
    for (const DeviceInfo& device : devices) {
        const std::string object = SerializeDevice(device, withName);
        const std::size_t cost = object.size() + kSeparatorCost;
        // Kept: the open chunk is closed whatever it holds. A device that alone is too large
        // follows an empty array.
        if (size + cost > kMaxChunkSize) {
            closeChunk();
        }
        if (size != 0) {
            openChunk += ',';
        }
        openChunk += object;
        size += cost;
    }
    if (size != 0) {
        closeChunk();
    }
    return chunks;
}

}  // namespace DeviceReporter
