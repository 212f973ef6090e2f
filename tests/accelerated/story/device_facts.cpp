#include <cstdio>
#include <stdexcept>

#include "accelerated/story/machine_facts.h"
#include "accelerated/story/text.h"

namespace story {
namespace {

using nlohmann::json;

constexpr unsigned kRemovableBit = 0x4000;
/// Longer answers do not fit into what the plug-in asks with.
constexpr std::size_t kMostPropertyUnits = 2047;
constexpr std::size_t kMostHidUnits = 129;

[[noreturn]] void Unknown(const std::string& what) {
    throw std::runtime_error("the model knows nothing of " + what);
}

/// "${n}", "${n:4}" and "${n:4X}" in one text.
std::string Numbered(std::string text, unsigned number) {
    for (std::size_t begin = 0; (begin = text.find("${n", begin)) != std::string::npos;) {
        const std::size_t end = text.find('}', begin);
        const std::string form = text.substr(begin + 3, end - begin - 3);
        const int width = form.empty() ? 1 : std::stoi(form.substr(1));
        char digits[32];
        std::snprintf(digits, sizeof(digits), form.find('X') == std::string::npos ? "%0*u" : "%0*X",
                      width, number);
        text.replace(begin, end + 1 - begin, digits);
    }
    return text;
}

json NumberedTexts(json value, unsigned number) {
    if (value.is_string()) {
        return Numbered(value.get<std::string>(), number);
    }
    if (value.is_structured()) {
        for (json& item : value) {
            item = NumberedTexts(item, number);
        }
    }
    return value;
}

std::wstring PropertyText(const std::string& name, const json& value) {
    if (value.is_string()) {
        const auto text = value.get<std::string>();
        return Utf16FromUtf8(name == "ContainerId" || name == "ClassGuid" ? UpperCase(text) : text);
    }
    if (value.is_object() && value.size() == 1) {
        if (value.contains("string")) {
            return Utf16FromUtf8(value["string"].get<std::string>());
        }
        if (value.contains("guid")) {
            return Utf16FromUtf8(UpperCase(value["guid"].get<std::string>()));
        }
        if (value.contains("uint32")) {
            return std::to_wstring(value["uint32"].get<std::uint32_t>());
        }
    }
    const json& list = value.is_object() && value.contains("strings") ? value["strings"] : value;
    if (!list.is_array()) {
        Unknown("a property " + value.dump());
    }
    std::wstring joined;
    for (const json& item : list) {
        AppendUnique(joined, Utf16FromUtf8(item.get<std::string>()));
    }
    return joined;
}

std::string InterfaceClass(const std::string& name) {
    static const std::map<std::string, std::string> kNamed{
        {"hid", "{4D1E55B2-F16F-11CF-88CB-001111000030}"},
        {"usb", "{A5DCBF10-6530-11D2-901F-00C04FB951ED}"},
        {"monitor", "{E6F07B5F-EE97-4A90-B076-33F57BF4EAA7}"},
        {"disk", "{53F56307-B6BF-11D0-94F2-00A0C91EFB8B}"}};
    const auto named = kNamed.find(name);
    return named == kNamed.end() ? UpperCase(name) : named->second;
}

InterfaceFact ReadInterface(const json& value) {
    InterfaceFact fact;
    fact.classGuid = InterfaceClass(value.at("class").get<std::string>());
    const json hid = value.value("hid", json());
    if (hid.is_object()) {
        fact.opens = MemberOr(hid, "openError", 0) == 0;
        fact.product = ReadText(hid, "product");
        fact.manufacturer = ReadText(hid, "manufacturer");
        if (fact.product.value_or(L"").size() > kMostHidUnits ||
            fact.manufacturer.value_or(L"").size() > kMostHidUnits) {
            Unknown("HID texts as long as in " + value.dump());
        }
    }
    return fact;
}

DeviceFact ReadDevice(const json& value) {
    DeviceFact fact;
    fact.id = Utf16FromUtf8(value.at("id").get<std::string>());
    fact.present = MemberOr(value, "present", true);
    const bool removableByStatus = (MemberOr(value, "status", 0U) & kRemovableBit) != 0;
    fact.removable =
        MemberOr(value, "removable", removableByStatus) && MemberOr(value, "statusResult", 0U) == 0;
    const json properties = value.value("properties", json::object());
    for (const auto& [name, property] : properties.items()) {
        if (name.front() == '{') {
            Unknown("a property key " + name);
        }
        std::wstring text = PropertyText(name, property);
        if (text.size() <= kMostPropertyUnits) {
            fact.properties[name] = std::move(text);
        }
    }
    for (const json& item : value.value("interfaces", json::array())) {
        fact.interfaces.push_back(ReadInterface(item));
    }
    return fact;
}

}  // namespace

std::vector<DeviceFact> ReadDeviceFacts(const json& machine) {
    std::vector<DeviceFact> devices;
    for (const json& item : machine.value("devices", json::array())) {
        if (!item.contains("repeat")) {
            devices.push_back(ReadDevice(item));
            continue;
        }
        for (unsigned number = 1; number <= item["repeat"].get<unsigned>(); ++number) {
            for (const json& member : item.at("devices")) {
                devices.push_back(ReadDevice(NumberedTexts(member, number)));
            }
        }
    }
    return devices;
}

}  // namespace story
