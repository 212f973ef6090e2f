#include <optional>
#include <stdexcept>

#include "accelerated/story/inventory_model.h"

namespace story {
namespace {

constexpr std::size_t kMostUnitsOfTypeAndPort = 8;
constexpr std::size_t kMakerOffset = 8;
constexpr std::size_t kUnitsOfDisplayId = 15;

std::wstring TopologyWord(unsigned topology) {
    switch (topology) {
        case 1:
            return L"INTERNAL";
        case 2:
            return L"CLONE";
        case 4:
            return L"EXTEND";
        case 8:
            return L"EXTERNAL";
        default:
            return L"UNKNOWN";
    }
}

/// Three letters of five bits each. Nothing where one of them is none.
std::optional<std::wstring> EdidMaker(const std::vector<BYTE>& edid) {
    if (edid.size() < kMakerOffset + 2) {
        throw std::runtime_error("with so short an EDID the plug-in ends its process");
    }
    const unsigned packed = edid[kMakerOffset] * 256U + edid[kMakerOffset + 1];
    std::wstring maker;
    for (const unsigned shift : {10U, 5U, 0U}) {
        const unsigned number = packed >> shift & 31U;
        if (number < 1 || number > 26) {
            return std::nullopt;
        }
        maker.push_back(static_cast<wchar_t>(L'A' + number - 1));
    }
    return maker + L"#";
}

/// Whether the path names a registry key: "DISPLAY" and three parts, each ended by "#".
bool NamesRegistryKey(const std::wstring& path) {
    std::size_t position = path.find(L"DISPLAY");
    for (int part = 0; part < 3 && position != std::wstring::npos; ++part) {
        position = path.find(L'#', position + 1);
    }
    return position != std::wstring::npos;
}

std::wstring DisplayId(const std::wstring& path) {
    const std::size_t begin = path.find(L"DISPLAY#");
    return begin != std::wstring::npos && begin + kUnitsOfDisplayId < path.size()
               ? path.substr(begin, kUnitsOfDisplayId)
               : std::wstring();
}

}  // namespace

std::vector<DeviceInfo> PrinterRecords(const simulation::Machine& machine) {
    std::vector<DeviceInfo> records;
    for (const simulation::Printer& printer : machine.printers) {
        if (!printer.name || !printer.driverName) {
            continue;
        }
        const simulation::PrinterDriver driver =
            printer.driver.value_or(simulation::PrinterDriver());
        DeviceInfo record;
        record.instanceId = *printer.name;
        record.name = *printer.name;
        record.className = L"Printer";
        record.description = *printer.driverName;
        record.vendorId = printer.dataType.value_or(L"").substr(0, kMostUnitsOfTypeAndPort);
        AppendUnique(record.vendorId,
                     printer.portName.value_or(L"").substr(0, kMostUnitsOfTypeAndPort));
        record.manufacturer = driver.manufacturer.value_or(L"");
        record.containerId = driver.hardwareId.value_or(L"");
        records.push_back(record);
    }
    return records;
}

std::vector<DeviceInfo> DisplayRecords(const simulation::Machine& machine) {
    std::vector<DeviceInfo> records;
    for (const simulation::DisplayPath& display : machine.display.paths) {
        if (!NamesRegistryKey(display.devicePath) || !display.edid || display.edid->empty()) {
            return {};
        }
        const std::optional<std::wstring> maker = EdidMaker(*display.edid);
        if (!maker || !display.mode) {
            return {};
        }
        DeviceInfo record;
        record.instanceId = display.devicePath;
        record.name = display.friendlyName;
        record.manufacturer = *maker;
        record.className = L"Monitor";
        record.description = std::to_wstring(display.mode->width & 0xFFFF) + L"x" +
                             std::to_wstring(display.mode->height & 0xFFFF) + L"@" +
                             std::to_wstring(display.mode->frequency & 0xFFFF) + L"Hz_" +
                             TopologyWord(machine.display.topology) +
                             (records.empty() ? L"_I" : L"_E");
        record.vendorId = DisplayId(display.devicePath);
        records.push_back(record);
    }
    return records;
}

}  // namespace story
