#include "floors/plain_records.h"

#include <utility>

#include "util/string_convert.h"

namespace benchmarks {
namespace {

constexpr wchar_t kContainerId[] = L"{C0DE0000-ABC0-4D00-8A01-020304050607}";

std::string Field(const std::wstring& text) { return WStringToUtf8(text.substr(0, 32)); }

}  // namespace

TextRows PrepareTexts(const std::vector<simulation::Device>& devices) {
    TextRows rows;
    for (const simulation::Device& device : devices) {
        std::vector<const wchar_t*> row = {device.instanceId.c_str()};
        for (const simulation::DeviceProperty& property : device.properties) {
            const bool isText = property.type == DEVPROP_TYPE_STRING;
            row.push_back(isText ? reinterpret_cast<const wchar_t*>(property.bytes.data())
                                 : kContainerId);
        }
        rows.push_back(row);
    }
    return rows;
}

DeviceReporter::DeviceMap FillFromTexts(const TextRows& rows) {
    DeviceReporter::DeviceMap devices;
    for (const std::vector<const wchar_t*>& row : rows) {
        DeviceReporter::DeviceInfo record;
        record.instanceId = row[0];
        record.parent = row[1];
        record.className = row[2];
        record.manufacturer = row[3];
        record.description = row[4];
        record.name = row[5];
        record.vendorId = row[6];
        record.containerId = row[7];
        devices.emplace(row[0], std::move(record));
    }
    return devices;
}

nlohmann::json MakeDeviceArray(const DeviceReporter::DeviceMap& devices) {
    nlohmann::json array = nlohmann::json::array();
    for (const auto& [instanceId, device] : devices) {
        nlohmann::json object;
        object["device"] = Field(device.vendorId);
        object["class"] = Field(device.className);
        object["desc"] = Field(device.description);
        object["maker"] = Field(device.manufacturer);
        object["name"] = Field(device.name);
        array.push_back(std::move(object));
    }
    return array;
}

}  // namespace benchmarks
