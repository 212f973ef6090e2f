#include "simulation/machine_loader.h"

#include <cwchar>
#include <fstream>
#include <iterator>
#include <set>

#include "simulation/call_text.h"
#include "simulation/loader/section_readers.h"

namespace simulation {
namespace {

/// One line of UTF-8. The parser writes a control character the same way.
std::string Readable(const std::string& text) {
    std::wstring line;
    for (const wchar_t unit : FromUtf8(text)) {
        if (unit >= 0x20) {
            line += unit;
            continue;
        }
        wchar_t name[16];
        std::swprintf(name, std::size(name), L"<U+%04X>", static_cast<unsigned>(unit));
        line += name;
    }
    return ToUtf8(line);
}

/// The parser keeps the last of several equal keys of an object; in a machine file the others would
/// be lost unseen.
nlohmann::json ParseWithUniqueKeys(const std::string& text, const std::string& fileName) {
    using Event = nlohmann::json::parse_event_t;
    std::vector<std::set<std::string>> openObjects;
    const auto watch = [&](int, Event event, nlohmann::json& parsed) {
        if (event == Event::object_start) {
            openObjects.emplace_back();
        } else if (event == Event::object_end) {
            openObjects.pop_back();
        } else if (event == Event::key &&
                   !openObjects.back().insert(parsed.get<std::string>()).second) {
            throw MachineFileError(fileName + ": the key " + parsed.dump() +
                                   " occurs twice in one object");
        }
        return true;
    };
    try {
        return nlohmann::json::parse(text, watch);
    } catch (const nlohmann::json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: ...", or a number that
        // is too large for any type, which the parser does not count among the parse errors.
        const std::string message = error.what();
        throw MachineFileError(fileName + ": not JSON: " + message.substr(message.find(']') + 2));
    }
}

Firmware ReadFirmware(const JsonNode& node) {
    const JsonObject object(node, kFirmwareShape);
    Firmware firmware;
    ReadIfPresent(object, "boardProduct", firmware.boardProduct, &JsonNode::Text);
    ReadIfPresent(object, "oemProduct", firmware.oemProduct, &JsonNode::Text);
    ReadIfPresent(object, "biosVersion", firmware.biosVersion, &JsonNode::Text);
    return firmware;
}

RegistryPreset ReadRegistry(const JsonNode& node) {
    const JsonObject object(node, kRegistryShape);
    RegistryPreset preset;
    ReadNullable(object, "biosReportTime", preset.biosReportTime, &JsonNode::Whole<std::int64_t>);
    ReadNullable(object, "reportDevicesCount", preset.reportDevicesCount,
                 &JsonNode::Whole<std::int32_t>);
    ReadNullable(object, "popUpBlocking", preset.popUpBlocking, &JsonNode::Whole<std::int32_t>);
    ReadNullable(object, "powerfulMode", preset.powerfulMode, &JsonNode::Whole<std::int32_t>);
    return preset;
}

/// "1.2.3.4"
std::array<WORD, 4> ReadVersion(const JsonNode& node) {
    std::array<WORD, 4> numbers{};
    std::string rest = node.Utf8() + ".";
    for (WORD& number : numbers) {
        const std::size_t dot = rest.find('.');
        const std::string digits = rest.substr(0, dot);
        if (digits.empty() || digits.size() > 5 ||
            digits.find_first_not_of("0123456789") != std::string::npos ||
            std::stoul(digits) > 0xFFFF) {
            node.FailExpecting("four numbers up to 65535 such as \"12.0.3.105\"");
        }
        number = static_cast<WORD>(std::stoul(digits));
        rest.erase(0, dot + 1);
    }
    if (!rest.empty()) {
        node.FailExpecting("four numbers up to 65535 such as \"12.0.3.105\"");
    }
    return numbers;
}

std::map<std::wstring, FileVersion> ReadFileVersions(const JsonNode& node) {
    std::map<std::wstring, FileVersion> versions;
    for (const auto& [path, member] : node.Members()) {
        const JsonObject object(member, kFileVersionShape);
        FileVersion& version = versions[FromUtf8(path)];
        version.product = ReadVersion(object["product"]);
        version.file = version.product;
        ReadIfPresent(object, "file", version.file, ReadVersion);
    }
    return versions;
}

Clocks ReadClocks(const JsonNode& node) {
    const JsonObject object(node, kClocksShape);
    Clocks clocks;
    ReadNullable(object, "unixSeconds", clocks.unixSeconds, &JsonNode::Whole<std::int64_t>);
    ReadNullable(object, "steadyNanoseconds", clocks.steadyNanoseconds,
                 &JsonNode::Whole<std::int64_t>);
    return clocks;
}

}  // namespace

MachineFileError::MachineFileError(const std::string& text) : std::runtime_error(Readable(text)) {}

Machine ParseMachine(const std::string& text, const std::string& fileName) {
    const nlohmann::json document = ParseWithUniqueKeys(text, fileName);
    const JsonObject object(JsonNode(document, "", fileName), kMachineShape);
    Machine machine;
    ReadIfPresent(object, "description", machine.description, &JsonNode::Utf8);
    ReadIfPresent(object, "devices", machine.devices, ReadDevices);
    ReadIfPresent(object, "printers", machine.printers, ReadPrinters);
    ReadIfPresent(object, "display", machine.display, ReadDisplay);
    ReadIfPresent(object, "logons", machine.logons, ReadLogons);
    ReadNullable(object, "firmware", machine.firmware, ReadFirmware);
    ReadIfPresent(object, "suite", machine.suite, ReadSuite);
    ReadIfPresent(object, "registry", machine.registry, ReadRegistry);
    ReadIfPresent(object, "fileVersions", machine.fileVersions, ReadFileVersions);
    ReadIfPresent(object, "clocks", machine.clocks, ReadClocks);
    return machine;
}

Machine LoadMachine(const std::filesystem::path& file) {
    const std::string name = ToUtf8(file.wstring());
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw MachineFileError(name + ": the file cannot be opened");
    }
    const std::string text{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    return ParseMachine(text, name);
}

}  // namespace simulation
