#include "host/inventory_view.h"

namespace host {
namespace {

using Records = std::vector<InventoryRecord>;

/// Few texts are wider, but some of those are very wide.
constexpr std::size_t kMaxAlignedWidth = 40;

std::string Cell(const std::string& text) {
    if (text.empty()) {
        return "-";
    }
    std::string cell = text;
    for (std::size_t at = cell.find('\n'); at != std::string::npos; at = cell.find('\n')) {
        cell.replace(at, 1, " / ");
    }
    return Printable(cell);
}

struct Column {
    const char* heading;
    std::string InventoryRecord::*text;
};

constexpr Column kWhy{"why", &InventoryRecord::obstacles};
constexpr Column kClass{"class", &InventoryRecord::className};
constexpr Column kName{"name", &InventoryRecord::name};
constexpr Column kDescription{"desc", &InventoryRecord::description};
constexpr Column kMaker{"maker", &InventoryRecord::manufacturer};
constexpr Column kDevice{"device", &InventoryRecord::vendorId};
constexpr Column kRemovable{"removable", &InventoryRecord::removable};
constexpr Column kContainer{"container", &InventoryRecord::containerId};
constexpr Column kHardwareId{"hardware id", &InventoryRecord::containerId};
constexpr Column kInstanceId{"instance id", &InventoryRecord::instanceId};
constexpr Column kDevicePath{"device path", &InventoryRecord::instanceId};

using Columns = std::vector<Column>;

Columns DeviceColumns() {
    return {kClass, kName, kDescription, kMaker, kDevice, kRemovable, kContainer, kInstanceId};
}

Columns UnreportedColumns() {
    Columns columns = DeviceColumns();
    columns.insert(columns.begin(), kWhy);
    return columns;
}

// A printer's instance id is its name; printers and displays are never removable.
Columns PrinterColumns() { return {kClass, kName, kDescription, kMaker, kDevice, kHardwareId}; }

Columns DisplayColumns() { return {kClass, kName, kDescription, kMaker, kDevice, kDevicePath}; }

struct Section {
    const char* title;
    const char* noun;
    const Records& records;
    Columns columns;
    const char* remark;  ///< Below the title, unless there are no records; may be null.
};

void AddSection(TextLines& lines, const Section& section) {
    lines.push_back(std::string(section.title) + ": " +
                    Plural(section.records.size(), section.noun));
    if (!section.records.empty()) {
        if (section.remark != nullptr) {
            lines.push_back("  " + std::string(section.remark));
        }
        TextTable table;
        table.maxAlignedWidth = kMaxAlignedWidth;
        std::vector<std::string>& headings = table.rows.emplace_back();
        for (const Column& column : section.columns) {
            headings.emplace_back(column.heading);
        }
        for (const InventoryRecord& record : section.records) {
            std::vector<std::string>& row = table.rows.emplace_back();
            for (const Column& column : section.columns) {
                row.push_back(Cell(record.*column.text));
            }
        }
        for (const std::string& row : FormatTable(table)) {
            lines.push_back("    " + row);
        }
    }
    lines.emplace_back();
}

void AddCounts(TextLines& lines, const std::vector<Section>& sections, std::size_t devices) {
    TextTable table;
    table.rightAligned = {1};
    table.rows.push_back({"device map", std::to_string(devices)});
    for (const Section& section : sections) {
        table.rows.push_back({section.title, std::to_string(section.records.size())});
    }
    const TextLines counts = FormatTable(table);
    lines.insert(lines.end(), counts.begin(), counts.end());
}

}  // namespace

TextLines DescribeInventory(const Inventory& inventory) {
    const std::vector<Section> sections{
        {"HIDList", "device", inventory.hid, DeviceColumns(), nullptr},
        {"BluetoothList", "device", inventory.bluetooth, DeviceColumns(), nullptr},
        {"DeviceList", "device", inventory.other, DeviceColumns(), nullptr},
        {"PrinterList", "printer", inventory.printers, PrinterColumns(), nullptr},
        {"DisplayList", "display", inventory.displays, DisplayColumns(), nullptr},
        {"Not reported", "device", inventory.unreported, UnreportedColumns(),
         "why: container, it has no removable device; class, none or a system class; vendor id, "
         "none"},
    };
    TextLines lines;
    for (const Section& section : sections) {
        AddSection(lines, section);
    }
    AddCounts(lines, sections,
              inventory.hid.size() + inventory.bluetooth.size() + inventory.other.size() +
                  inventory.unreported.size());
    return lines;
}

}  // namespace host
