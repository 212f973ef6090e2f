#include "host/device_list.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace host {
namespace {

using Json = nlohmann::json;

/// False when the member is there but is no text.
bool ReadText(const Json& object, const char* key, std::string& text) {
    const auto member = object.find(key);
    if (member == object.end()) {
        return true;
    }
    if (!member->is_string()) {
        return false;
    }
    text = member->get<std::string>();
    return true;
}

}  // namespace

std::optional<std::vector<ListedDevice>> ParseDeviceChunk(const std::string& json) {
    const Json array = Json::parse(json, /*cb=*/nullptr, /*allow_exceptions=*/false);
    if (!array.is_array()) {
        return std::nullopt;
    }
    std::vector<ListedDevice> devices;
    for (const Json& object : array) {
        ListedDevice device;
        if (!object.is_object() || !ReadText(object, "class", device.className) ||
            !ReadText(object, "desc", device.description) ||
            !ReadText(object, "device", device.device) ||
            !ReadText(object, "maker", device.maker) || !ReadText(object, "name", device.name)) {
            return std::nullopt;
        }
        devices.push_back(std::move(device));
    }
    return devices;
}

void DeviceListCollector::Begin(std::chrono::seconds time) { lists.emplace_back().time = time; }

void DeviceListCollector::Add(const SentEvent& event) {
    if (event.id != kDeviceListEventId || lists.empty()) {
        return;
    }
    DeviceList& list = lists.back();
    ++list.events;
    list.bytes += EventBytes(event);
    for (const SentField& field : event.fields) {
        auto section = std::find_if(
            list.sections.begin(), list.sections.end(),
            [&](const DeviceSection& candidate) { return candidate.key == field.key; });
        if (section == list.sections.end()) {
            section = list.sections.insert(section, DeviceSection{field.key, {}, 0});
        }
        if (auto devices = ParseDeviceChunk(field.value)) {
            std::move(devices->begin(), devices->end(), std::back_inserter(section->devices));
        } else {
            ++section->unreadableChunks;
        }
    }
}

}  // namespace host
