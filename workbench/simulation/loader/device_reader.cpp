#include <set>

#include "simulation/loader/repetition.h"
#include "simulation/loader/section_readers.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

GUID ReadInterfaceClass(const JsonNode& node) {
    for (const NamedInterfaceClass& known : NamedInterfaceClasses()) {
        if (node.IsText() && node.Utf8() == known.name) {
            return known.guid;
        }
    }
    if (node.IsText() && node.Utf8().rfind('{', 0) != 0) {
        node.FailExpecting("\"hid\", \"usb\", \"monitor\", \"disk\" or a GUID in braces");
    }
    return node.Guid();
}

HidAnswers ReadHid(const JsonNode& node) {
    const JsonObject object(node, kHidShape);
    HidAnswers hid;
    ReadIfPresent(object, "openError", hid.openError, &JsonNode::Whole<DWORD>);
    ReadNullable(object, "product", hid.product, &JsonNode::Text);
    ReadNullable(object, "manufacturer", hid.manufacturer, &JsonNode::Text);
    return hid;
}

DeviceInterface ReadInterface(const JsonNode& node) {
    const JsonObject object(node, kInterfaceShape);
    DeviceInterface result;
    result.interfaceClass = ReadInterfaceClass(object["class"]);
    result.path = object["path"].Text();
    ReadNullable(object, "hid", result.hid, ReadHid);
    return result;
}

Device ReadDevice(const JsonNode& node) {
    const JsonObject object(node, kDeviceShape);
    Device device;
    device.instanceId = object["id"].Text();
    ReadIfPresent(object, "present", device.present, &JsonNode::Flag);
    ReadIfPresent(object, "status", device.status, &JsonNode::Whole<ULONG>);
    ReadIfPresent(object, "problem", device.problem, &JsonNode::Whole<ULONG>);
    ReadIfPresent(object, "statusResult", device.statusResult, &JsonNode::Whole<DWORD>);
    if (const auto removable = object.Find("removable")) {
        device.SetRemovable(removable->Flag());
    }
    ReadIfPresent(object, "properties", device.properties, ReadProperties);
    if (const auto interfaces = object.Find("interfaces")) {
        for (const JsonNode& item : interfaces->Items()) {
            device.interfaces.push_back(ReadInterface(item));
        }
    }
    return device;
}

/// A list of devices, growing; no two of them may have the same id.
class DeviceList {
public:
    void Add(const JsonNode& node) {
        Device device = ReadDevice(node);
        if (!ids.insert(device.instanceId).second) {
            node.Fail("a device with the same \"id\" comes before");
        }
        devices.push_back(std::move(device));
    }

    void AddGroup(const JsonNode& node) {
        const JsonObject group(node, kDeviceGroupShape);
        const auto count = group["repeat"].Whole<WORD>();
        const JsonNode members = group["devices"];
        for (unsigned number = 1; number <= count; ++number) {
            for (const JsonNode& member : members.Items()) {
                const nlohmann::json numbered = WithNumber(member, number);
                Add(member.WithValue(numbered));
            }
        }
    }

    std::vector<Device> devices;

private:
    std::set<std::wstring> ids;
};

}  // namespace

std::vector<Device> ReadDevices(const JsonNode& list) {
    DeviceList result;
    for (const JsonNode& item : list.Items()) {
        if (item.IsObject() && item.Json().contains("repeat")) {
            result.AddGroup(item);
        } else {
            result.Add(item);
        }
    }
    return result.devices;
}

}  // namespace simulation
