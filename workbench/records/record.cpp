#include "records/record.h"

#include <nlohmann/json.hpp>

namespace records {

std::string EventName(int id) {
    switch (id) {
        case kBiosInfoEventId:
            return "BIOS information";
        case kEcLogEventId:
            return "embedded controller's log";
        case kPopUpBlockInfoEventId:
            return "optimisation component";
        case kDeviceListEventId:
            return "device list";
        default:
            return "unknown event";
    }
}

std::size_t EventBytes(const SentEvent& event) {
    std::size_t bytes = 0;
    for (const SentField& field : event.fields) {
        bytes += field.key.size() + field.value.size();
    }
    return bytes;
}

std::optional<std::vector<ListedDevice>> ParseDeviceChunk(const std::string& json) {
    using Json = nlohmann::json;
    const Json array = Json::parse(json, /*cb=*/nullptr, /*allow_exceptions=*/false);
    if (!array.is_array()) {
        return std::nullopt;
    }
    std::vector<ListedDevice> devices;
    try {
        for (const Json& object : array) {
            ListedDevice& device = devices.emplace_back();
            for (const char* const member : kDeviceMembers) {
                device.push_back(object.value(member, std::string()));
            }
        }
    } catch (const Json::type_error&) {
        return std::nullopt;  // No object, or a value that is no text.
    }
    return devices;
}

}  // namespace records
