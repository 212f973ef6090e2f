#include "simulation/loader/section_readers.h"

namespace simulation {
namespace {

PrinterDriver ReadDriver(const JsonNode& node) {
    const JsonObject object(node, kPrinterDriverShape);
    PrinterDriver driver;
    ReadNullable(object, "manufacturer", driver.manufacturer, &JsonNode::Text);
    ReadNullable(object, "hardwareId", driver.hardwareId, &JsonNode::Text);
    return driver;
}

Printer ReadPrinter(const JsonNode& node) {
    const JsonObject object(node, kPrinterShape);
    Printer printer;
    ReadNullable(object, "name", printer.name, &JsonNode::Text);
    ReadNullable(object, "driverName", printer.driverName, &JsonNode::Text);
    ReadNullable(object, "dataType", printer.dataType, &JsonNode::Text);
    ReadNullable(object, "portName", printer.portName, &JsonNode::Text);
    ReadNullable(object, "driver", printer.driver, ReadDriver);
    return printer;
}

LUID ReadAdapter(const JsonNode& node) {
    const auto number = node.Whole<std::int64_t>();
    return {static_cast<DWORD>(number & 0xFFFFFFFF), static_cast<LONG>(number >> 32)};
}

DisplayMode ReadMode(const JsonNode& node) {
    const JsonObject object(node, kDisplayModeShape);
    DisplayMode mode;
    ReadIfPresent(object, "width", mode.width, &JsonNode::Whole<DWORD>);
    ReadIfPresent(object, "height", mode.height, &JsonNode::Whole<DWORD>);
    ReadIfPresent(object, "frequency", mode.frequency, &JsonNode::Whole<DWORD>);
    ReadIfPresent(object, "logPixels", mode.logPixels, &JsonNode::Whole<WORD>);
    ReadIfPresent(object, "bitsPerPixel", mode.bitsPerPixel, &JsonNode::Whole<DWORD>);
    return mode;
}

DisplayPath ReadPath(const JsonNode& node) {
    const JsonObject object(node, kDisplayPathShape);
    DisplayPath path;
    ReadIfPresent(object, "sourceAdapter", path.sourceAdapter, ReadAdapter);
    path.targetAdapter = path.sourceAdapter;
    ReadIfPresent(object, "targetAdapter", path.targetAdapter, ReadAdapter);
    ReadIfPresent(object, "sourceId", path.sourceId, &JsonNode::Whole<UINT32>);
    ReadIfPresent(object, "targetId", path.targetId, &JsonNode::Whole<UINT32>);
    ReadIfPresent(object, "gdiName", path.gdiName, &JsonNode::Text);
    ReadIfPresent(object, "friendlyName", path.friendlyName, &JsonNode::Text);
    ReadIfPresent(object, "devicePath", path.devicePath, &JsonNode::Text);
    ReadNullable(object, "edid", path.edid, &JsonNode::Hex);
    ReadNullable(object, "mode", path.mode, ReadMode);
    return path;
}

UINT32 ReadTopology(const JsonNode& node) {
    if (node.IsNumber()) {
        return node.Whole<UINT32>();
    }
    return node.Word<UINT32>({{"internal", 1}, {"clone", 2}, {"extend", 4}, {"external", 8}});
}

}  // namespace

std::vector<Printer> ReadPrinters(const JsonNode& list) {
    std::vector<Printer> printers;
    for (const JsonNode& item : list.Items()) {
        printers.push_back(ReadPrinter(item));
    }
    return printers;
}

Display ReadDisplay(const JsonNode& node) {
    const JsonObject object(node, kDisplayShape);
    Display display;
    ReadIfPresent(object, "topology", display.topology, ReadTopology);
    if (const auto paths = object.Find("paths")) {
        for (const JsonNode& item : paths->Items()) {
            display.paths.push_back(ReadPath(item));
        }
    }
    return display;
}

}  // namespace simulation
