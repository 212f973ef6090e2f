#include "accelerated/story/device_list_model.h"

#include <cstdio>
#include <set>
#include <string>
#include <string_view>

#include "accelerated/story/text.h"

namespace story {
namespace {

constexpr std::size_t kMostUnitsOfField = 32;
constexpr std::size_t kChunkLimit = 1020;
constexpr std::size_t kCostOfRecord = 5;  ///< On top of its bytes.

using Records = std::vector<DeviceRecord>;
using Chunks = std::vector<std::string>;

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

std::string Member(const char* key, const std::wstring& field) {
    const std::wstring_view start = std::wstring_view(field).substr(0, kMostUnitsOfField);
    return Quoted(key) + ":" + Quoted(Utf8FromUtf16(start));
}

std::string ObjectOf(const DeviceRecord& record, bool withName) {
    return "{" + Member("class", record.className) + "," + Member("desc", record.description) +
           "," + Member("device", record.device) + "," + Member("maker", record.maker) +
           (withName ? "," + Member("name", record.name) : "") + "}";
}

Chunks ChunksOf(const Records& records, bool withName) {
    Chunks chunks;
    std::string open;
    std::size_t size = 0;
    for (const DeviceRecord& record : records) {
        const std::string object = ObjectOf(record, withName);
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

bool BeginsWith(const std::wstring& text, std::wstring_view start) {
    return text.compare(0, start.size(), start) == 0;
}

struct DeviceClasses {
    Records hid, bluetooth, other;
};

/// Only what shares a container with a removable device, and nothing of the system's own.
DeviceClasses Classify(const DeviceRecords& inventory) {
    std::set<std::wstring> containers;
    for (const auto& [id, record] : inventory) {
        if (record.isRemovable) {
            containers.insert(record.container);
        }
    }
    DeviceClasses classes;
    for (const auto& [id, record] : inventory) {
        if (record.device.empty() || record.className.empty() ||
            record.className.find(L"System") != std::wstring::npos ||
            containers.count(record.container) == 0) {
            continue;
        }
        Records& list = BeginsWith(id, L"HID")   ? classes.hid
                        : BeginsWith(id, L"BTH") ? classes.bluetooth
                                                 : classes.other;
        list.push_back(record);
    }
    return classes;
}

}  // namespace

std::vector<SentEvent> DeviceListEvents(const DeviceRecords& inventory, const Records& printers,
                                        const Records& displays) {
    const DeviceClasses classes = Classify(inventory);
    const std::pair<const char*, Chunks> lists[] = {
        {"HIDList", ChunksOf(classes.hid, /*withName=*/true)},
        {"BluetoothList", ChunksOf(classes.bluetooth, /*withName=*/false)},
        {"DeviceList", ChunksOf(classes.other, /*withName=*/true)},
        {"PrinterList", ChunksOf(printers, /*withName=*/true)},
        {"DisplayList", ChunksOf(displays, /*withName=*/true)}};
    std::vector<SentEvent> events;
    for (std::size_t i = 0;; ++i) {
        SentEvent event{kDeviceListEvent, {}};
        for (const auto& [key, chunks] : lists) {
            if (i < chunks.size()) {
                event.fields.emplace_back(key, chunks[i]);
            }
        }
        if (event.fields.empty()) {
            return events;
        }
        events.push_back(event);
    }
}

}  // namespace story
