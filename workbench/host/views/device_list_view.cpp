#include "host/views/device_list_view.h"

#include <algorithm>
#include <iterator>

#include "host/machine_time.h"

namespace host {

using workbench::FormatTable;
using workbench::TextLines;
using workbench::TextTable;

namespace {

const DeviceSection* FindSection(const DeviceList& list, const std::string& key) {
    const auto section = std::find_if(list.sections.begin(), list.sections.end(),
                                      [&](const DeviceSection& one) { return one.key == key; });
    return section == list.sections.end() ? nullptr : &*section;
}

/// The devices under a key, in an order that two lists can be compared in.
std::vector<records::ListedDevice> SortedDevices(const DeviceList& list, const std::string& key) {
    const DeviceSection* const section = FindSection(list, key);
    std::vector<records::ListedDevice> devices =
        section == nullptr ? std::vector<records::ListedDevice>() : section->devices;
    std::sort(devices.begin(), devices.end());
    return devices;
}

/// The keys of all lists, in the order of their first occurrence.
std::vector<std::string> KeysOf(const std::vector<DeviceList>& lists) {
    std::vector<std::string> keys;
    for (const DeviceList& list : lists) {
        for (const DeviceSection& section : list.sections) {
            if (std::find(keys.begin(), keys.end(), section.key) == keys.end()) {
                keys.push_back(section.key);
            }
        }
    }
    return keys;
}

/// Rows of the devices that `list` has and `other` lacks, under each key.
void AddMissing(TextTable& table, const std::string& front, const DeviceList& list,
                const DeviceList& other) {
    for (const DeviceSection& section : list.sections) {
        const std::vector<records::ListedDevice> devices = SortedDevices(list, section.key);
        const std::vector<records::ListedDevice> others = SortedDevices(other, section.key);
        std::vector<records::ListedDevice> missing;
        std::set_difference(devices.begin(), devices.end(), others.begin(), others.end(),
                            std::back_inserter(missing));
        for (const records::ListedDevice& device : missing) {
            table.rows.push_back({front, section.key, device[0],
                                  device[1].empty() ? device[2] : device[1], device[3], device[4]});
        }
    }
}

std::string AndUnreadable(const DeviceSection& section) {
    return section.unreadableChunks == 0
               ? ""
               : " and " + workbench::Plural(section.unreadableChunks, "unreadable chunk");
}

std::string CountText(const DeviceSection* section) {
    return section == nullptr ? "0"
                              : std::to_string(section->devices.size()) + AndUnreadable(*section);
}

TextLines Overview(const std::vector<DeviceList>& lists, int firstNumber) {
    const std::vector<std::string> keys = KeysOf(lists);
    TextTable table;
    table.rows.push_back({"list", "sent at", "events", "bytes"});
    table.rows[0].insert(table.rows[0].end(), keys.begin(), keys.end());
    for (const DeviceList& list : lists) {
        std::vector<std::string> row{std::to_string(firstNumber++), FormatMachineTime(list.time),
                                     std::to_string(list.events), std::to_string(list.bytes)};
        std::transform(keys.begin(), keys.end(), std::back_inserter(row),
                       [&](const std::string& key) { return CountText(FindSection(list, key)); });
        table.rows.push_back(std::move(row));
    }
    for (std::size_t column = 0; column < table.rows[0].size(); ++column) {
        table.rightAligned.push_back(column);
    }
    return FormatTable(table);
}

TextLines Changes(const std::vector<DeviceList>& lists, int firstNumber) {
    TextTable table;
    for (std::size_t i = 1; i < lists.size(); ++i) {
        const std::string number = std::to_string(firstNumber + static_cast<int>(i));
        AddMissing(table, "  new in list " + number, lists[i], lists[i - 1]);
        AddMissing(table, "  gone from list " + number, lists[i - 1], lists[i]);
    }
    return table.rows.empty() ? TextLines{"  nothing"} : FormatTable(table);
}

TextLines InFull(const DeviceList& list) {
    TextLines lines;
    for (const DeviceSection& section : list.sections) {
        lines.push_back("  " + section.key + ": " +
                        workbench::Plural(section.devices.size(), "device") +
                        AndUnreadable(section));
        TextTable table{{{std::begin(records::kDeviceMembers), std::end(records::kDeviceMembers)}},
                        {}};
        table.rows.insert(table.rows.end(), section.devices.begin(), section.devices.end());
        for (const std::string& row : FormatTable(table)) {
            lines.push_back("    " + row);
        }
    }
    return lines;
}

void Append(TextLines& lines, const TextLines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

}  // namespace

void DeviceLists::Add(const records::SentEvent& event) {
    if (event.id != records::kDeviceListEventId || lists.empty()) {
        return;
    }
    DeviceList& list = lists.back();
    ++list.events;
    list.bytes += records::EventBytes(event);
    for (const records::SentField& field : event.fields) {
        auto section = std::find_if(
            list.sections.begin(), list.sections.end(),
            [&](const DeviceSection& candidate) { return candidate.key == field.key; });
        if (section == list.sections.end()) {
            section = list.sections.insert(section, DeviceSection{field.key, {}, 0});
        }
        if (auto devices = records::ParseDeviceChunk(field.value)) {
            std::move(devices->begin(), devices->end(), std::back_inserter(section->devices));
        } else {
            ++section->unreadableChunks;
        }
    }
}

TextLines DeviceLists::Describe(int firstNumber) const {
    if (lists.empty()) {
        return {};
    }
    TextLines lines{"Device lists, put together again from their chunks, with devices by key:"};
    Append(lines, Overview(lists, firstNumber));
    if (lists.size() > 1) {
        lines.emplace_back();
        lines.emplace_back("What changed from list to list:");
        Append(lines, Changes(lists, firstNumber));
    }
    lines.emplace_back();
    const int lastNumber = firstNumber + static_cast<int>(lists.size()) - 1;
    lines.push_back("Device list " + std::to_string(lastNumber) + " in full:");
    Append(lines, InFull(lists.back()));
    return lines;
}

}  // namespace host
