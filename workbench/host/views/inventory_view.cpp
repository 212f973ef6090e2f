#include "host/views/inventory_view.h"

#include <string>

#include "common/text.h"

namespace host {

using device_inventory::List;
using workbench::Plural;
using workbench::TextLines;
using workbench::TextTable;

namespace {

using DeviceReporter::DeviceInfo;
using Records = std::vector<InventoryRecord>;

/// Few texts are wider, but some of those are very wide.
constexpr std::size_t kMaxAlignedWidth = 40;

std::string Cell(const std::wstring& text) {
    return text.empty()
               ? "-"
               : workbench::Printable(workbench::Replaced(workbench::ToUtf8(text), "\n", " / "));
}

std::string ObstacleText(unsigned obstacles) {
    std::string text;
    const auto name = [&](unsigned obstacle, const char* word) {
        if ((obstacles & obstacle) != 0) {
            text += (text.empty() ? "" : ", ") + std::string(word);
        }
    };
    name(device_inventory::kContainer, "container");
    name(device_inventory::kClass, "class");
    name(device_inventory::kVendorId, "vendor id");
    return text;
}

/// How the table of a list looks. A printer's instance id is its name, and its container id is its
/// hardware id; printers and displays are never removable.
struct Section {
    List list;
    const char* title;
    const char* noun;
    const char* containerHeading;   ///< Null where the column is missing.
    const char* instanceIdHeading;  ///< The same.

    bool HasDevices() const { return list != List::Printer && list != List::Display; }
    bool TellsWhy() const { return list == List::Unreported; }
};

constexpr Section kSections[] = {
    {List::Hid, "HIDList", "device", "container", "instance id"},
    {List::Bluetooth, "BluetoothList", "device", "container", "instance id"},
    {List::Other, "DeviceList", "device", "container", "instance id"},
    {List::Printer, "PrinterList", "printer", "hardware id", nullptr},
    {List::Display, "DisplayList", "display", nullptr, "device path"},
    {List::Unreported, "Not reported", "device", "container", "instance id"}};

/// A row, or the headings where there is no record.
std::vector<std::string> Row(const Section& section, const InventoryRecord* record) {
    std::vector<std::string> row;
    const auto add = [&](const char* heading, std::wstring DeviceInfo::*text) {
        row.push_back(record == nullptr ? heading : Cell(record->device.*text));
    };
    if (section.TellsWhy()) {
        row.emplace_back(record == nullptr ? "why" : ObstacleText(record->obstacles));
    }
    add("class", &DeviceInfo::className);
    add("name", &DeviceInfo::name);
    add("desc", &DeviceInfo::description);
    add("maker", &DeviceInfo::manufacturer);
    add("device", &DeviceInfo::vendorId);
    if (section.HasDevices()) {
        row.emplace_back(record == nullptr            ? "removable"
                         : record->device.isRemovable ? "yes"
                                                      : "no");
    }
    if (section.containerHeading != nullptr) {
        add(section.containerHeading, &DeviceInfo::containerId);
    }
    if (section.instanceIdHeading != nullptr) {
        add(section.instanceIdHeading, &DeviceInfo::instanceId);
    }
    return row;
}

void AddTable(TextLines& lines, const Section& section, const Records& records) {
    if (section.TellsWhy()) {
        lines.emplace_back(
            "  why: container, it has no removable device; class, none or a system class; vendor "
            "id, none");
    }
    TextTable table;
    table.maxAlignedWidth = kMaxAlignedWidth;
    table.rows.push_back(Row(section, nullptr));
    for (const InventoryRecord& record : records) {
        table.rows.push_back(Row(section, &record));
    }
    for (const std::string& row : FormatTable(table)) {
        lines.push_back("    " + row);
    }
}

}  // namespace

TextLines DescribeInventory(const Inventory& inventory) {
    TextLines lines;
    TextTable counts{{{"device map", ""}}, /*rightAligned=*/{1}};
    std::size_t devices = 0;
    for (const Section& section : kSections) {
        const auto found = inventory.find(section.list);
        const Records records = found == inventory.end() ? Records() : found->second;
        lines.push_back(std::string(section.title) + ": " + Plural(records.size(), section.noun));
        if (!records.empty()) {
            AddTable(lines, section, records);
        }
        lines.emplace_back();
        counts.rows.push_back({section.title, std::to_string(records.size())});
        devices += section.HasDevices() ? records.size() : 0;
    }
    counts.rows[0][1] = std::to_string(devices);
    const TextLines table = FormatTable(counts);
    lines.insert(lines.end(), table.begin(), table.end());
    return lines;
}

}  // namespace host
