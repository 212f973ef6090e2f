#include "simulation/device_property.h"

#include <cstring>

#include "simulation/call_text.h"

namespace simulation {
namespace {

void AppendText(std::vector<BYTE>& bytes, std::wstring_view text) {
    const auto* first = reinterpret_cast<const BYTE*>(text.data());
    bytes.insert(bytes.end(), first, first + text.size() * sizeof(wchar_t));
    bytes.insert(bytes.end(), sizeof(wchar_t), 0);
}

template <class Value>
std::vector<BYTE> BytesOf(const Value& value) {
    std::vector<BYTE> bytes(sizeof(value));
    std::memcpy(bytes.data(), &value, sizeof(value));
    return bytes;
}

}  // namespace

DeviceProperty DeviceProperty::String(const DEVPROPKEY& key, std::wstring_view text) {
    std::vector<BYTE> bytes;
    AppendText(bytes, text);
    return Raw(key, DEVPROP_TYPE_STRING, std::move(bytes));
}

DeviceProperty DeviceProperty::StringList(const DEVPROPKEY& key,
                                          const std::vector<std::wstring>& texts) {
    std::vector<BYTE> bytes;
    for (const std::wstring& text : texts) {
        AppendText(bytes, text);
    }
    AppendText(bytes, {});
    return Raw(key, DEVPROP_TYPE_STRING_LIST, std::move(bytes));
}

DeviceProperty DeviceProperty::Guid(const DEVPROPKEY& key, const GUID& guid) {
    return Raw(key, DEVPROP_TYPE_GUID, BytesOf(guid));
}

DeviceProperty DeviceProperty::UInt32(const DEVPROPKEY& key, UINT32 number) {
    return Raw(key, DEVPROP_TYPE_UINT32, BytesOf(number));
}

DeviceProperty DeviceProperty::Raw(const DEVPROPKEY& key, DEVPROPTYPE type,
                                   std::vector<BYTE> bytes) {
    return {key, type, std::move(bytes)};
}

const DeviceProperty* FindProperty(const std::vector<DeviceProperty>& properties,
                                   const DEVPROPKEY& key) {
    for (const DeviceProperty& property : properties) {
        if (property.key.pid == key.pid && property.key.fmtid == key.fmtid) {
            return &property;
        }
    }
    return nullptr;
}

std::string KeyText(const DEVPROPKEY& key) {
    return GuidText(key.fmtid) + " " + std::to_string(key.pid);
}

}  // namespace simulation
