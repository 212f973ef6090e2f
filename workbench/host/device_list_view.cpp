#include "host/device_list_view.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "host/machine_time.h"

namespace host {
namespace {

auto Texts(const ListedDevice& device) {
    return std::tie(device.className, device.name, device.description, device.maker, device.device);
}

bool operator<(const ListedDevice& left, const ListedDevice& right) {
    return Texts(left) < Texts(right);
}

const DeviceSection* FindSection(const DeviceList& list, const std::string& key) {
    const auto section = std::find_if(list.sections.begin(), list.sections.end(),
                                      [&](const DeviceSection& one) { return one.key == key; });
    return section == list.sections.end() ? nullptr : &*section;
}

/// The devices under a key, in an order that two lists can be compared in.
std::vector<ListedDevice> SortedDevices(const DeviceList& list, const std::string& key) {
    const DeviceSection* const section = FindSection(list, key);
    std::vector<ListedDevice> devices =
        section == nullptr ? std::vector<ListedDevice>() : section->devices;
    std::sort(devices.begin(), devices.end(), operator<);
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
        const std::vector<ListedDevice> devices = SortedDevices(list, section.key);
        const std::vector<ListedDevice> others = SortedDevices(other, section.key);
        std::vector<ListedDevice> missing;
        std::set_difference(devices.begin(), devices.end(), others.begin(), others.end(),
                            std::back_inserter(missing), operator<);
        for (const ListedDevice& device : missing) {
            table.rows.push_back({front, section.key, device.className,
                                  device.name.empty() ? device.description : device.name,
                                  device.maker, device.device});
        }
    }
}

std::string AndUnreadable(const DeviceSection& section) {
    return section.unreadableChunks == 0
               ? ""
               : " and " + Plural(section.unreadableChunks, "unreadable chunk");
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
        lines.push_back("  " + section.key + ": " + Plural(section.devices.size(), "device") +
                        AndUnreadable(section));
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

void Append(TextLines& lines, const TextLines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

}  // namespace

TextLines DescribeDeviceLists(const std::vector<DeviceList>& lists, int firstNumber) {
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
