#include "unit/device_list/chunk_model.h"

#include <cstdio>

#include "support/utf8_sequence.h"

namespace device_list_test {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsHigh(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLow(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char character : text) {
        static constexpr std::string_view kSpecial = "\"\\\b\f\n\r\t";
        static constexpr std::string_view kLetters = "\"\\bfnrt";
        const std::size_t index = kSpecial.find(character);
        if (index != std::string_view::npos) {
            quoted += {'\\', kLetters[index]};
        } else if (static_cast<unsigned char>(character) < 0x20) {
            char escape[7];
            std::snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned>(character));
            quoted += escape;
        } else {
            quoted += character;
        }
    }
    return quoted + "\"";
}

std::string ObjectOf(const DeviceReporter::DeviceInfo& device, bool withName) {
    std::string object = "{\"class\":" + Quoted(ExpectedText(device.className)) +
                         ",\"desc\":" + Quoted(ExpectedText(device.description)) +
                         ",\"device\":" + Quoted(ExpectedText(device.vendorId)) +
                         ",\"maker\":" + Quoted(ExpectedText(device.manufacturer));
    if (withName) {
        object += ",\"name\":" + Quoted(ExpectedText(device.name));
    }
    return object + "}";
}

}  // namespace

std::string ExpectedText(std::wstring_view text) {
    std::wstring_view units = text.substr(0, 32);
    units = units.substr(0, units.find(L'\0'));
    std::string result;
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (IsHigh(units[i]) && i + 1 < units.size() && IsLow(units[i + 1])) {
            result += test_support::Utf8Of(0x10000u + ((units[i] - 0xD800u) << 10) +
                                           (units[i + 1] - 0xDC00u));
            ++i;
        } else if (IsHigh(units[i]) || IsLow(units[i])) {
            result += test_support::Utf8Of(kReplacement);
        } else {
            result += test_support::Utf8Of(units[i]);
        }
    }
    return result;
}

std::vector<std::string> ExpectedChunks(const std::vector<DeviceReporter::DeviceInfo>& devices,
                                        bool withName) {
    std::vector<std::string> chunks;
    std::string open;
    std::size_t size = 0;
    for (const DeviceReporter::DeviceInfo& device : devices) {
        const std::string object = ObjectOf(device, withName);
        if (size + object.size() + 5 > 1020) {
            chunks.push_back("[" + open + "]");
            open.clear();
            size = 0;
        }
        open += (open.empty() ? "" : ",") + object;
        size += object.size() + 5;
    }
    if (size > 0) {
        chunks.push_back("[" + open + "]");
    }
    return chunks;
}

}  // namespace device_list_test
