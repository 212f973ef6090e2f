#include "support/device_list_model.h"

#include <cstdio>
#include <set>
#include <string_view>
#include <utility>

#include "support/utf8.h"

namespace test_support {
namespace {

using DeviceReporter::DeviceInfo;

constexpr std::size_t kMostUnitsOfField = 32;
constexpr std::size_t kChunkLimit = 1020;
constexpr std::size_t kCostOfRecord = 5;  ///< On top of its bytes.

/// A JSON string: nothing beyond ASCII is escaped.
std::string Quoted(std::string_view text) {
    static constexpr std::string_view kNamed = "\"\\\b\f\n\r\t";
    static constexpr std::string_view kNames = "\"\\bfnrt";
    std::string quoted = "\"";
    for (const char unit : text) {
        const std::size_t named = kNamed.find(unit);
        if (named != std::string_view::npos) {
            quoted += {'\\', kNames[named]};
        } else if (static_cast<unsigned char>(unit) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned>(unit));
            quoted += escape;
        } else {
            quoted += unit;
        }
    }
    return quoted + '"';
}

std::string Member(const char* key, std::wstring_view field) {
    return Quoted(key) + ":" + Quoted(Utf8FromUtf16(field.substr(0, kMostUnitsOfField)));
}

std::string ObjectOf(const DeviceInfo& device, bool withName) {
    return "{" + Member("class", device.className) + "," + Member("desc", device.description) +
           "," + Member("device", device.vendorId) + "," + Member("maker", device.manufacturer) +
           (withName ? "," + Member("name", device.name) : "") + "}";
}

bool BeginsWith(std::wstring_view text, std::wstring_view start) {
    return text.substr(0, start.size()) == start;
}

}  // namespace

std::vector<std::string> ExpectedChunks(const DeviceRecords& devices, bool withName) {
    std::vector<std::string> chunks;
    std::string open;
    std::size_t size = 0;
    for (const DeviceInfo& device : devices) {
        const std::string object = ObjectOf(device, withName);
        const std::size_t cost = object.size() + kCostOfRecord;
        if (size + cost > kChunkLimit) {
            chunks.push_back("[" + open + "]");
            open.clear();
            size = 0;
        }
        open += (open.empty() ? "" : ",") + object;
        size += cost;
    }
    if (size != 0) {
        chunks.push_back("[" + open + "]");
    }
    return chunks;
}

ClassifiedDevices ExpectedLists(const DeviceReporter::DeviceMap& devices) {
    std::set<std::wstring> containers;
    for (const auto& [id, device] : devices) {
        if (device.isRemovable) {
            containers.insert(device.containerId);
        }
    }
    ClassifiedDevices lists;
    for (const auto& [id, device] : devices) {
        if (device.vendorId.empty() || device.className.empty() ||
            device.className.find(L"System") != std::wstring::npos ||
            containers.count(device.containerId) == 0) {
            continue;
        }
        DeviceRecords& list = BeginsWith(id, L"HID")   ? lists.hid
                              : BeginsWith(id, L"BTH") ? lists.bluetooth
                                                       : lists.other;
        list.push_back(device);
    }
    return lists;
}

std::vector<EventFields> ExpectedEvents(const DeviceReporter::DeviceMap& devices,
                                        const DeviceRecords& printers,
                                        const DeviceRecords& displays) {
    const ClassifiedDevices classified = ExpectedLists(devices);
    const std::pair<const char*, std::vector<std::string>> lists[] = {
        {"HIDList", ExpectedChunks(classified.hid, /*withName=*/true)},
        {"BluetoothList", ExpectedChunks(classified.bluetooth, /*withName=*/false)},
        {"DeviceList", ExpectedChunks(classified.other, /*withName=*/true)},
        {"PrinterList", ExpectedChunks(printers, /*withName=*/true)},
        {"DisplayList", ExpectedChunks(displays, /*withName=*/true)}};
    std::vector<EventFields> events;
    for (std::size_t i = 0;; ++i) {
        EventFields fields;
        for (const auto& [key, chunks] : lists) {
            if (i < chunks.size()) {
                fields.emplace_back(key, chunks[i]);
            }
        }
        if (fields.empty()) {
            return events;
        }
        events.push_back(std::move(fields));
    }
}

}  // namespace test_support
