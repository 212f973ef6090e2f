// Device properties of any type, with any content, in a buffer that ends where memory ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "device_reporter/device_properties.h"
#include "fuzz/campaign.h"
#include "fuzz/guarded_memory.h"
#include "fuzz/texts.h"

namespace {

using DeviceReporter::PropertyBuffer;
using fuzz::RequireSame;

constexpr std::size_t kCapacity = sizeof(PropertyBuffer) / sizeof(wchar_t);

struct TypedProperty {
    DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
    std::string bytes;  ///< The beginning of the buffer; zeros follow.
};

void PrintTo(const TypedProperty& property, std::ostream* stream) {
    *stream << "type " << property.type << " with " << property.bytes.size() << " bytes "
            << testing::PrintToString(property.bytes);
}

PropertyBuffer& Buffer(const std::string& bytes) {
    static fuzz::GuardedMemory memory(sizeof(PropertyBuffer));
    BYTE* const begin = memory.Last(sizeof(PropertyBuffer));
    std::memcpy(begin, bytes.data(), bytes.size());
    return *reinterpret_cast<PropertyBuffer*>(begin);
}

std::wstring_view AllUnits(const PropertyBuffer& buffer) { return {buffer, kCapacity}; }

std::string BytesOf(const std::wstring& text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

/// Some texts with their terminators; the last one's may be missing, as may be the list's.
std::wstring MakeList(fuzz::Random& random) {
    std::wstring list;
    std::vector<std::wstring> earlier = {L""};
    for (std::size_t count = random.Below(8); count > 0; --count) {
        std::wstring text = fuzz::MakeText(random, 60);
        if (random.OneIn(4)) {
            // The same again, or a part of it.
            text = random.Pick(earlier);
            text = text.substr(random.Below(text.size() + 1));
        }
        earlier.push_back(text);
        list += text;
        list += L'\0';
    }
    if (random.OneIn(16)) {
        list.resize(kCapacity, L'x');
    } else if (!list.empty() && random.OneIn(4)) {
        list.pop_back();
    }
    list.resize(std::min(list.size(), kCapacity));
    return list;
}

std::string MakeContent(fuzz::Random& random) {
    switch (random.Below(6)) {
        case 0:
            return fuzz::MakeBytes(random, random.Below(20));
        case 1:
            return fuzz::MakeBytes(random, fuzz::MakeLength(random, sizeof(PropertyBuffer)));
        case 2:
            return BytesOf(MakeList(random));
        case 3:
            // No terminator anywhere.
            return random.OneIn(16) ? std::string(sizeof(PropertyBuffer), 'x') : std::string();
        default:
            return BytesOf(fuzz::MakeText(random, random.OneIn(32) ? kCapacity : 80));
    }
}

TypedProperty MakeProperty(fuzz::Random& random) {
    constexpr DEVPROPTYPE kKnown[] = {DEVPROP_TYPE_UINT32, DEVPROP_TYPE_GUID, DEVPROP_TYPE_STRING,
                                      DEVPROP_TYPE_STRING, DEVPROP_TYPE_STRING_LIST};
    constexpr DEVPROPTYPE kModifiers[] = {0, DEVPROP_TYPEMOD_ARRAY, DEVPROP_TYPEMOD_LIST, 0x3000};
    TypedProperty property;
    property.type = random.Pick(kKnown);
    if (random.OneIn(4)) {
        property.type = static_cast<DEVPROPTYPE>(random.Below(MAX_DEVPROP_TYPE + 2));
        property.type |= random.Pick(kModifiers);
    }
    if (random.OneIn(64)) {
        property.type = static_cast<DEVPROPTYPE>(random.Bits());
    }
    property.bytes = MakeContent(random);
    return property;
}

std::wstring ExpectedNumber(const PropertyBuffer& buffer) {
    const unsigned long number = buffer[0] | static_cast<unsigned long>(buffer[1]) << 16;
    return std::to_wstring(number);
}

/// The GUID's bytes as digits in the order in which its text has them.
std::wstring ExpectedGuid(const PropertyBuffer& buffer) {
    constexpr int kOrder[] = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
    const auto* const bytes = reinterpret_cast<const unsigned char*>(buffer);
    std::wstring text = L"{";
    for (const int index : kOrder) {
        if (index < 0) {
            text += L'-';
            continue;
        }
        text += L"0123456789ABCDEF"[bytes[index] >> 4];
        text += L"0123456789ABCDEF"[bytes[index] & 15];
    }
    return text + L"}";
}

std::wstring ExpectedList(std::wstring_view units) {
    std::wstring lines;
    while (!units.empty() && units[0] != L'\0') {
        const std::wstring_view text = units.substr(0, units.find(L'\0'));
        if (lines.find(text) == std::wstring::npos) {
            lines.append(lines.empty() ? L"" : L"\n").append(text);
        }
        units.remove_prefix(std::min(units.size(), text.size() + 1));
    }
    return lines;
}

std::wstring ExpectedText(DEVPROPTYPE type, const PropertyBuffer& buffer) {
    switch (type) {
        case 7:
            return ExpectedNumber(buffer);
        case 13:
            return ExpectedGuid(buffer);
        case 18:
            return std::wstring(AllUnits(buffer).substr(0, AllUnits(buffer).find(L'\0')));
        case 0x2012:
            return ExpectedList(AllUnits(buffer));
        default:
            return {};
    }
}

void CheckProperty(const TypedProperty& property) {
    const PropertyBuffer& buffer = Buffer(property.bytes);
    const std::wstring text = DeviceReporter::PropertyToString(property.type, buffer);
    RequireSame(text, ExpectedText(property.type, buffer), "the text is that of the type");
}

std::string MakeStringList(fuzz::Random& random) { return BytesOf(MakeList(random)); }

void CheckStringList(const std::string& bytes) {
    const PropertyBuffer& buffer = Buffer(bytes);
    const std::wstring lines = DeviceReporter::JoinStringList(buffer);
    RequireSame(lines, ExpectedList(AllUnits(buffer)), "each text is told once");
}

TEST(PropertyFuzz, ReadsEveryTypeWithinTheBuffer) {
    fuzz::TryInputs("typed properties", 400000, MakeProperty, CheckProperty);
}

TEST(PropertyFuzz, JoinsListsWithAndWithoutTheirTerminators) {
    fuzz::TryInputs("string lists", 200000, MakeStringList, CheckStringList);
}

}  // namespace
