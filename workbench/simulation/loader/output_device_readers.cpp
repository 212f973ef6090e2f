#include "simulation/loader/section_readers.h"

namespace simulation {
namespace {

void ReadAdapter(const JsonNode& node, LUID& adapter) {
    const auto number = node.Whole<std::int64_t>();
    adapter = {static_cast<DWORD>(number & 0xFFFFFFFF), static_cast<LONG>(number >> 32)};
}

void ReadTopology(const JsonNode& node, UINT32& topology) {
    topology =
        node.IsNumber()
            ? node.Whole<UINT32>()
            : node.Word<UINT32>({{"internal", 1}, {"clone", 2}, {"extend", 4}, {"external", 8}});
}

}  // namespace

void Read(const JsonNode& node, PrinterDriver& driver) {
    node.ReadObject(
        {{"manufacturer", Into(driver.manufacturer)}, {"hardwareId", Into(driver.hardwareId)}});
}

void Read(const JsonNode& node, Printer& printer) {
    node.ReadObject({{"name", Into(printer.name)},
                     {"driverName", Into(printer.driverName)},
                     {"dataType", Into(printer.dataType)},
                     {"portName", Into(printer.portName)},
                     {"driver", Into(printer.driver)}});
}

void Read(const JsonNode& node, DisplayMode& mode) {
    WORD logPixels = static_cast<WORD>(mode.logPixels);
    node.ReadObject({{"width", Into(mode.width)},
                     {"height", Into(mode.height)},
                     {"frequency", Into(mode.frequency)},
                     {"logPixels", Into(logPixels)},
                     {"bitsPerPixel", Into(mode.bitsPerPixel)}});
    mode.logPixels = logPixels;
}

void Read(const JsonNode& node, DisplayPath& path) {
    const auto readSource = [&](const JsonNode& member) {
        ReadAdapter(member, path.sourceAdapter);
        path.targetAdapter = path.sourceAdapter;
    };
    const auto readTarget = [&](const JsonNode& member) {
        ReadAdapter(member, path.targetAdapter);
    };
    node.ReadObject({{"sourceAdapter", readSource},
                     {"targetAdapter", readTarget},
                     {"sourceId", Into(path.sourceId)},
                     {"targetId", Into(path.targetId)},
                     {"gdiName", Into(path.gdiName)},
                     {"friendlyName", Into(path.friendlyName)},
                     {"devicePath", Into(path.devicePath)},
                     {"edid", Into(path.edid)},
                     {"mode", Into(path.mode)}});
}

void Read(const JsonNode& node, Display& display) {
    const auto readTopology = [&](const JsonNode& member) {
        ReadTopology(member, display.topology);
    };
    node.ReadObject({{"topology", readTopology}, {"paths", Into(display.paths)}});
}

}  // namespace simulation
