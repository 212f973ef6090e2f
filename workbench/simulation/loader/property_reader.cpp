#include <algorithm>

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
    Read(node, texts);
    return texts;
}

/// A value that names its type, for types that differ from the key's own.
DeviceProperty ReadTyped(const JsonNode& node, const DEVPROPKEY& key) {
    std::optional<std::wstring> text;
    std::optional<std::vector<std::wstring>> texts;
    std::optional<GUID> guid;
    std::optional<UINT32> number;
    std::optional<DEVPROPTYPE> type;
    std::optional<std::vector<BYTE>> bytes;
    node.ReadObject({{"string", Into(text)},
                     {"strings", Into(texts)},
                     {"guid", Into(guid)},
                     {"uint32", Into(number)},
                     {"type", Into(type)},
                     {"hex", Into(bytes)}});
    const std::size_t keys = node.Json().size();
    if (keys == 2 && type && bytes) {
        return DeviceProperty::Raw(key, *type, *bytes);
    }
    if (keys == 1 && text) {
        return DeviceProperty::String(key, *text);
    }
    if (keys == 1 && texts) {
        return DeviceProperty::StringList(key, *texts);
    }
    if (keys == 1 && guid) {
        return DeviceProperty::Guid(key, *guid);
    }
    if (keys == 1 && number) {
        return DeviceProperty::UInt32(key, *number);
    }
    node.Fail(R"(expected "string", "strings", "guid", "uint32" or the pair "type" and "hex")");
}

DeviceProperty ReadOfType(const JsonNode& node, const NamedPropertyKey& known) {
    if (node.IsNull()) {
        return {known.key, DEVPROP_TYPE_EMPTY, {}};
    }
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

void Read(const JsonNode& members, std::vector<DeviceProperty>& properties) {
    std::vector<std::string_view> names;
    for (const NamedPropertyKey& known : kNamedPropertyKeys) {
        names.push_back(known.name);
    }
    for (const auto& [name, node] : members.Members()) {
        if (name.rfind('{', 0) == 0) {
            properties.push_back(ReadTyped(node, ParseKey(node, name)));
            continue;
        }
        const auto known = std::find(names.begin(), names.end(), name);
        if (known == names.end()) {
            members.FailUnknownKey(name, names);
        }
        const NamedPropertyKey& key = kNamedPropertyKeys[known - names.begin()];
        properties.push_back(node.IsObject() ? ReadTyped(node, key.key) : ReadOfType(node, key));
    }
}

}  // namespace simulation
