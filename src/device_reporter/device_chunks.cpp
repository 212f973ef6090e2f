#include "device_reporter/device_chunks.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

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

nlohmann::json MakeDeviceObject(const DeviceInfo& device, bool withName) {
    nlohmann::json object = {
        {"device", MakeField(device.vendorId)},
        {"class", MakeField(device.className)},
        {"desc", MakeField(device.description)},
        {"maker", MakeField(device.manufacturer)},
    };
    if (withName) {
        object["name"] = MakeField(device.name);
    }
    return object;
}

}  // namespace

std::vector<std::string> SerializeDeviceList(const std::vector<DeviceInfo>& devices,
                                             bool withName) {
    std::vector<std::string> chunks;
    nlohmann::json openChunk = nlohmann::json::array();
    std::size_t size = 0;
    for (const DeviceInfo& device : devices) {
        nlohmann::json object = MakeDeviceObject(device, withName);
        const std::size_t cost = object.dump().size() + kSeparatorCost;
        // The open chunk is closed whatever it holds: a device that alone is too large follows an
        // empty array.
        if (size + cost > kMaxChunkSize) {
            chunks.push_back(openChunk.dump());
            openChunk.clear();
            size = 0;
        }
        openChunk.push_back(std::move(object));
        size += cost;
    }
    if (size != 0) {
        chunks.push_back(openChunk.dump());
    }
    return chunks;
}

}  // namespace DeviceReporter
