#include <algorithm>
#include <cstdio>
#include <cwctype>

#include "simulation/call_text.h"
#include "simulation/loader/section_readers.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

void ReadInterfaceClass(const JsonNode& node, GUID& interfaceClass) {
    for (const NamedInterfaceClass& known : kNamedInterfaceClasses) {
        if (node.IsText() && node.Utf8() == known.name) {
            interfaceClass = known.guid;
            return;
        }
    }
    if (node.IsText() && node.Utf8().rfind('{', 0) != 0) {
        node.FailExpecting("\"hid\", \"usb\", \"monitor\", \"disk\" or a GUID in braces");
    }
    interfaceClass = node.Guid();
}

/// `form` is what stands between "${n" and "}".
std::string NumberText(const JsonNode& node, std::string_view form, unsigned number) {
    const bool withWidth = form.size() >= 2 && form[0] == ':' && form[1] >= '1' && form[1] <= '8';
    const bool decimal = form.empty() || (withWidth && form.size() == 2);
    const bool hexadecimal = withWidth && form.size() == 3 && form[2] == 'X';
    if (!decimal && !hexadecimal) {
        node.Fail("expected ${n}, ${n:4} or ${n:4X}, found \"${n" + std::string(form) + "}\"");
    }
    const int width = withWidth ? form[1] - '0' : 1;
    char text[16];
    std::snprintf(text, sizeof(text), hexadecimal ? "%0*X" : "%0*u", width, number);
    return text;
}

std::string NumberedText(const JsonNode& node, std::string_view text, unsigned number) {
    constexpr std::string_view kOpening = "${n";
    std::string result;
    for (;;) {
        const std::size_t begin = text.find(kOpening);
        result += text.substr(0, begin);
        if (begin == std::string_view::npos) {
            return result;
        }
        text.remove_prefix(begin + kOpening.size());
        const std::size_t end = text.find('}');
        if (end == std::string_view::npos) {
            node.Fail("\"${n\" without its \"}\"");
        }
        result += NumberText(node, text.substr(0, end), number);
        text.remove_prefix(end + 1);
    }
}

/// The value of `node` with `number` in place of every ${n} in its texts: ${n} in decimal, ${n:4}
/// in decimal and ${n:4X} in hexadecimal digits with leading zeros to that width.
nlohmann::json WithNumber(const JsonNode& node, unsigned number) {
    if (node.IsText()) {
        return NumberedText(node, node.Utf8(), number);
    }
    nlohmann::json result = node.Json();
    if (node.IsObject()) {
        for (const auto& [key, member] : node.Members()) {
            result[key] = WithNumber(member, number);
        }
    } else if (result.is_array()) {
        const std::vector<JsonNode> items = node.Items();
        for (std::size_t i = 0; i < items.size(); ++i) {
            result[i] = WithNumber(items[i], number);
        }
    }
    return result;
}

/// The path under which the system offers an interface.
std::wstring InterfacePath(const Device& device, const GUID& interfaceClass) {
    std::wstring path = device.instanceId + L"#" + FromUtf8(GuidText(interfaceClass));
    std::replace(path.begin(), path.end(), L'\\', L'#');
    std::transform(path.begin(), path.end(), path.begin(), towlower);
    return L"\\\\?\\" + path;
}

/// A list of devices, growing; no two of them may have the same id.
class DeviceList {
public:
    void Add(const JsonNode& node) {
        Device device;
        Read(node, device);
        AddWhatTheSystemSays(device);
        const DeviceProperty* const container = FindProperty(device.properties, kContainerIdKey);
        const auto idAsParent = DeviceProperty::String(kParentKey, device.instanceId).bytes;
        if (!containers.emplace(idAsParent, container == nullptr ? DeviceProperty() : *container)
                 .second) {
            node.Fail("a device with the same \"id\" comes before");
        }
        devices.push_back(std::move(device));
    }

    void AddGroup(const JsonNode& node) {
        WORD count = 0;
        const auto addEach = [&](const JsonNode& members) {
            for (unsigned number = 1; number <= count; ++number) {
                for (const JsonNode& member : members.Items()) {
                    const nlohmann::json numbered = WithNumber(member, number);
                    Add(member.WithValue(numbered));
                }
            }
        };
        node.ReadObject({{"repeat", Into(count)}, {"devices", addEach, kRequired}});
    }

    std::vector<Device> devices;

private:
    /// What a file need not say: the name is the friendly name or else the description, and the
    /// container is the parent's, unless the file has null for them.
    void AddWhatTheSystemSays(Device& device) const {
        std::vector<DeviceProperty>& properties = device.properties;
        const auto add = [&](const DEVPROPKEY& key, const DeviceProperty* source) {
            if (source != nullptr && FindProperty(properties, key) == nullptr) {
                properties.push_back(DeviceProperty::Raw(key, source->type, source->bytes));
            }
        };
        const DeviceProperty* const friendlyName = FindProperty(properties, kFriendlyNameKey);
        add(kNameKey,
            friendlyName != nullptr ? friendlyName : FindProperty(properties, kDeviceDescKey));
        const DeviceProperty* const parent = FindProperty(properties, kParentKey);
        const auto listed = parent == nullptr ? containers.end() : containers.find(parent->bytes);
        add(kContainerIdKey, listed == containers.end() ? nullptr : &listed->second);
        const auto isAbsent = [](const DeviceProperty& property) {
            return property.type == DEVPROP_TYPE_EMPTY;
        };
        properties.erase(std::remove_if(properties.begin(), properties.end(), isAbsent),
                         properties.end());
    }

    /// The container of each device, by its id as its children name it.
    std::map<std::vector<BYTE>, DeviceProperty> containers;
};

}  // namespace

void Read(const JsonNode& node, HidAnswers& hid) {
    node.ReadObject({{"product", Into(hid.product)},
                     {"manufacturer", Into(hid.manufacturer)},
                     {"openError", Into(hid.openError)}});
}

void Read(const JsonNode& node, DeviceInterface& result) {
    const auto readClass = [&](const JsonNode& member) {
        ReadInterfaceClass(member, result.interfaceClass);
    };
    node.ReadObject(
        {{"class", readClass, kRequired}, {"path", Into(result.path)}, {"hid", Into(result.hid)}});
}

void Read(const JsonNode& node, Device& device) {
    const auto readRemovable = [&](const JsonNode& member) { device.SetRemovable(member.Flag()); };
    node.ReadObject({{"id", Into(device.instanceId), kRequired},
                     {"present", Into(device.present)},
                     {"status", Into(device.status)},
                     {"removable", readRemovable},
                     {"problem", Into(device.problem)},
                     {"statusResult", Into(device.statusResult)},
                     {"properties", Into(device.properties)},
                     {"interfaces", Into(device.interfaces)}});
    for (DeviceInterface& offered : device.interfaces) {
        if (offered.path.empty()) {
            offered.path = InterfacePath(device, offered.interfaceClass);
        }
    }
}

void Read(const JsonNode& list, std::vector<Device>& devices) {
    DeviceList result;
    for (const JsonNode& item : list.Items()) {
        if (item.IsObject() && item.Json().contains("repeat")) {
            result.AddGroup(item);
        } else {
            result.Add(item);
        }
    }
    devices = std::move(result.devices);
}

}  // namespace simulation
