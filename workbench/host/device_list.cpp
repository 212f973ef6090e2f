#include "host/device_list.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "host/machine_time.h"

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

std::string Plural(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
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

void DeviceLists::Begin(std::chrono::seconds time) { lists.emplace_back().time = time; }

void DeviceLists::Add(const SentEvent& event) {
    if (event.id != kDeviceListEventId || lists.empty()) {
        return;
    }
    List& list = lists.back();
    ++list.events;
    list.bytes += EventBytes(event);
    for (const SentField& field : event.fields) {
        auto section =
            std::find_if(list.sections.begin(), list.sections.end(),
                         [&](const Section& candidate) { return candidate.key == field.key; });
        if (section == list.sections.end()) {
            section = list.sections.insert(section, Section{field.key, {}, 0});
        }
        if (auto devices = ParseDeviceChunk(field.value)) {
            std::move(devices->begin(), devices->end(), std::back_inserter(section->devices));
        } else {
            ++section->unreadableChunks;
        }
    }
}

TextLines DeviceLists::Describe() const {
    TextLines lines;
    TextLines devicesBefore;
    std::size_t number = 0;
    for (const List& list : lists) {
        if (number != 0) {
            lines.emplace_back();
        }
        lines.push_back("Device list " + std::to_string(++number) + ", sent at " +
                        FormatMachineTime(list.time) + " in " + Plural(list.events, "event") +
                        ", " + Plural(list.bytes, "byte"));
        TextLines devices = DescribeSections(list);
        if (devices == devicesBefore) {
            lines.emplace_back("  the same devices as before");
            continue;
        }
        lines.insert(lines.end(), devices.begin(), devices.end());
        devicesBefore = std::move(devices);
    }
    return lines;
}

TextLines DeviceLists::DescribeSections(const List& list) {
    TextLines lines;
    for (const Section& section : list.sections) {
        lines.push_back("  " + section.key + ": " + Plural(section.devices.size(), "device"));
        if (section.unreadableChunks != 0) {
            lines.back() += ", " + Plural(section.unreadableChunks, "chunk") + " unreadable";
        }
        TextTable table{{{"class", "name", "desc", "maker", "device"}}, {}};
        for (const ListedDevice& device : section.devices) {
            table.rows.push_back(
                {device.className, device.name, device.description, device.maker, device.device});
        }
        for (const std::string& row : FormatTable(table)) {
            lines.push_back("    " + row);
        }
    }
    return lines;
}

}  // namespace host
