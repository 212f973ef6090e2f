#include "simulation/machine_loader.h"

#include <cwchar>
#include <fstream>
#include <iterator>
#include <regex>
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

/// "1.2.3.4"
void ReadVersion(const JsonNode& node, std::array<WORD, 4>& numbers) {
    static const std::regex kForm(R"((\d{1,5})\.(\d{1,5})\.(\d{1,5})\.(\d{1,5}))");
    const std::string text = node.Utf8();
    std::smatch match;
    bool fits = std::regex_match(text, match, kForm);
    for (std::size_t i = 0; fits && i < numbers.size(); ++i) {
        const unsigned long number = std::stoul(match[i + 1]);
        fits = number <= 0xFFFF;
        numbers[i] = static_cast<WORD>(number);
    }
    if (!fits) {
        node.FailExpecting("four numbers up to 65535 such as \"12.0.3.105\"");
    }
}

}  // namespace

void Read(const JsonNode& node, RegistryPreset& preset) {
    node.ReadObject({{"biosReportTime", Into(preset.biosReportTime)},
                     {"reportDevicesCount", Into(preset.reportDevicesCount)},
                     {"popUpBlocking", Into(preset.popUpBlocking)},
                     {"powerfulMode", Into(preset.powerfulMode)}});
}

void Read(const JsonNode& node, std::map<std::wstring, FileVersion>& versions) {
    for (const auto& [path, member] : node.Members()) {
        FileVersion& version = versions[FromUtf8(path)];
        const auto readProduct = [&](const JsonNode& text) {
            ReadVersion(text, version.product);
            version.file = version.product;
        };
        const auto readFile = [&](const JsonNode& text) { ReadVersion(text, version.file); };
        member.ReadObject({{"product", readProduct, kRequired}, {"file", readFile}});
    }
}

MachineFileError::MachineFileError(const std::string& text) : std::runtime_error(Readable(text)) {}

Machine ParseMachine(const std::string& text, const std::string& fileName) {
    const nlohmann::json document = ParseWithUniqueKeys(text, fileName);
    Machine machine;
    const auto ignore = [](const JsonNode&) {};
    JsonNode(document, fileName)
        .ReadObject({{"$schema", ignore},
                     {"description", Into(machine.description)},
                     {"devices", Into(machine.devices)},
                     {"printers", Into(machine.printers)},
                     {"display", Into(machine.display)},
                     {"logons", Into(machine.logons)},
                     {"firmware", Into(machine.firmware)},
                     {"suite", Into(machine.suite)},
                     {"registry", Into(machine.registry)},
                     {"fileVersions", Into(machine.fileVersions)}});
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
