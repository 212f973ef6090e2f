#include "simulation/loader/nearest_key.h"
#include "simulation/loader/section_readers.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

/// "{GUID} number"
DEVPROPKEY ParseKey(const JsonNode& node, const std::string& text) {
    constexpr std::size_t kGuidLength = 38;
    const std::string number = text.size() > kGuidLength + 1 ? text.substr(kGuidLength + 1) : "";
    if (number.empty() || number.size() > 9 || text[kGuidLength] != ' ' ||
        number.find_first_not_of("0123456789") != std::string::npos) {
        node.Fail("expected a property key such as \"{A45C254E-DF1C-4EFD-8020-67D146A850E0} 14\"");
    }
    const nlohmann::json guid = text.substr(0, kGuidLength);
    return {node.WithValue(guid).Guid(), static_cast<DEVPROPID>(std::stoul(number))};
}

std::vector<std::wstring> ReadTexts(const JsonNode& node) {
    std::vector<std::wstring> texts;
    for (const JsonNode& item : node.Items()) {
        texts.push_back(item.Text());
    }
    return texts;
}

/// A value that names its type, for types that differ from the key's own.
DeviceProperty ReadTyped(const JsonNode& node, const DEVPROPKEY& key) {
    const JsonObject object(node, kPropertyShape);
    const std::size_t keys = node.Json().size();
    if (keys == 2 && object.Find("type") && object.Find("hex")) {
        return DeviceProperty::Raw(key, object["type"].Whole<DEVPROPTYPE>(), object["hex"].Hex());
    }
    if (keys == 1) {
        if (const auto text = object.Find("string")) {
            return DeviceProperty::String(key, text->Text());
        }
        if (const auto texts = object.Find("strings")) {
            return DeviceProperty::StringList(key, ReadTexts(*texts));
        }
        if (const auto guid = object.Find("guid")) {
            return DeviceProperty::Guid(key, guid->Guid());
        }
        if (const auto number = object.Find("uint32")) {
            return DeviceProperty::UInt32(key, number->Whole<UINT32>());
        }
    }
    node.Fail(R"(expected "string", "strings", "guid", "uint32" or the pair "type" and "hex")");
}

DeviceProperty ReadOfType(const JsonNode& node, const NamedPropertyKey& known) {
    switch (known.type) {
        case DEVPROP_TYPE_GUID:
            return DeviceProperty::Guid(known.key, node.Guid());
        case DEVPROP_TYPE_STRING_LIST:
            return DeviceProperty::StringList(known.key, ReadTexts(node));
        default:
            return DeviceProperty::String(known.key, node.Text());
    }
}

}  // namespace

std::vector<DeviceProperty> ReadProperties(const JsonNode& members) {
    std::vector<std::string_view> names;
    for (const NamedPropertyKey& known : NamedPropertyKeys()) {
        names.push_back(known.name);
    }
    std::vector<DeviceProperty> properties;
    for (const auto& [name, node] : members.Members()) {
        if (name.rfind('{', 0) == 0) {
            properties.push_back(ReadTyped(node, ParseKey(node, name)));
            continue;
        }
        RequireKnownKey(members, name, names);
        for (const NamedPropertyKey& known : NamedPropertyKeys()) {
            if (known.name == name) {
                properties.push_back(node.IsObject() ? ReadTyped(node, known.key)
                                                     : ReadOfType(node, known));
            }
        }
    }
    return properties;
}

}  // namespace simulation
