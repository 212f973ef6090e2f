#include "device_reporter/device_properties.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulation/well_known.h"
#include "support/grouping_locale.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using namespace std::literals;
using device_tests::IsEmpty;
using DeviceReporter::DeviceInfo;
using DeviceReporter::JoinStringList;
using DeviceReporter::PropertyToString;
using DeviceReporter::SetDeviceProperty;

// --- The text of a property ---

constexpr DEVPROPTYPE kUInt32 = 7;
constexpr DEVPROPTYPE kGuid = 13;
constexpr DEVPROPTYPE kString = 18;
constexpr DEVPROPTYPE kStringList = 0x2012;

/// A property buffer that ends where the memory ends: whoever reads on is stopped by the processor.
class BoundedPropertyBuffer {
public:
    BoundedPropertyBuffer()
        : pages(static_cast<BYTE*>(VirtualAlloc(/*lpAddress=*/nullptr, 2 * kSize,
                                                MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
        DWORD previous = 0;
        if (pages == nullptr || !VirtualProtect(pages + kSize, kSize, PAGE_NOACCESS, &previous)) {
            throw std::bad_alloc();
        }
    }
    ~BoundedPropertyBuffer() { VirtualFree(pages, /*dwSize=*/0, MEM_RELEASE); }
    BoundedPropertyBuffer(const BoundedPropertyBuffer&) = delete;
    BoundedPropertyBuffer& operator=(const BoundedPropertyBuffer&) = delete;

    DeviceReporter::PropertyBuffer& Get() {
        return *reinterpret_cast<DeviceReporter::PropertyBuffer*>(pages);
    }

    /// Puts the units at the beginning, NULs included; zeros follow.
    DeviceReporter::PropertyBuffer& With(std::wstring_view units) {
        std::memset(pages, 0, kSize);
        std::memcpy(pages, units.data(), units.size() * sizeof(wchar_t));
        return Get();
    }

    template <class Value>
    DeviceReporter::PropertyBuffer& WithBytesOf(const Value& value) {
        std::memset(pages, 0, kSize);
        std::memcpy(pages, &value, sizeof(value));
        return Get();
    }

private:
    static constexpr std::size_t kSize = 4096;
    static_assert(sizeof(DeviceReporter::PropertyBuffer) == kSize);

    BYTE* pages;
};

class PropertyText : public device_tests::DeviceTest {
protected:
    BoundedPropertyBuffer buffer;
};

TEST_F(PropertyText, OfANumberIsItsFirstFourBytesInUnsignedDecimal) {
    const test_support::GroupingLocale grouping;
    for (const auto& [number, text] :
         {std::pair(std::uint64_t{0}, L"0"), std::pair(std::uint64_t{1234567}, L"1234567"),
          std::pair(std::uint64_t{0xFFFFFFFF}, L"4294967295"),
          std::pair(std::uint64_t{0x1234567800000005}, L"5")}) {
        EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(number)), text);
    }
}

TEST_F(PropertyText, OfAGuidIsUpperCaseInBraces) {
    const GUID guid = {
        0x8c7ed206, 0x3f8a, 0x4827, {0xb3, 0xab, 0xae, 0x9e, 0x1f, 0xae, 0xfc, 0x6c}};
    EXPECT_EQ(PropertyToString(kGuid, buffer.WithBytesOf(guid)),
              L"{8C7ED206-3F8A-4827-B3AB-AE9E1FAEFC6C}");
}

TEST_F(PropertyText, OfAStringEndsAtItsTerminatorOrWithTheBuffer) {
    EXPECT_EQ(PropertyToString(kString, buffer.With(L"Mouse\0left over"sv)), L"Mouse");
    EXPECT_EQ(PropertyToString(kString, buffer.With(L"\0Mouse"sv)), L"");
    const std::wstring full(2048, L'x');
    EXPECT_EQ(PropertyToString(kString, buffer.With(full)), full);
    EXPECT_EQ(PropertyToString(kString, buffer.With(full.substr(1))), full.substr(1));
}

TEST_F(PropertyText, OfAnyOtherTypeIsEmpty) {
    auto& filled = buffer.With(std::wstring(2048, L'A'));
    // All base types and modifiers that fit into 16 bits; the defined ones are far below.
    for (DEVPROPTYPE type = 0; type <= 0xFFFF; ++type) {
        if (type != kUInt32 && type != kGuid && type != kString && type != kStringList) {
            ASSERT_EQ(PropertyToString(type, filled), L"") << "type " << type;
        }
    }
    EXPECT_EQ(PropertyToString(0x10012, filled), L"");
    EXPECT_EQ(PropertyToString(0xFFFFFFFF, filled), L"");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PropertyText, OfAStringListIsOneLineForEachStringUpToTheFirstEmptyOne) {
    EXPECT_EQ(PropertyToString(kStringList, buffer.With(L"A\0B\0A\0"sv)), L"A\nB");
    for (const auto& [list, lines] :
         {std::pair(L"AB\0B\0"sv, L"AB"sv), std::pair(L"B\0AB\0"sv, L"B\nAB"sv),
          std::pair(L"A\0\0B\0"sv, L"A"sv), std::pair(L"\0A\0"sv, L""sv),
          std::pair(L""sv, L""sv)}) {
        EXPECT_EQ(JoinStringList(buffer.With(list)), lines);
    }
}

TEST_F(PropertyText, OfAStringListEndsWithTheBuffer) {
    const std::wstring x(2048, L'x');
    // The last string has no terminator, or the last unit is its terminator.
    EXPECT_EQ(JoinStringList(buffer.With(x)), x);
    EXPECT_EQ(JoinStringList(buffer.With(L"A\0"s + x.substr(2))), L"A\n" + x.substr(2));
    EXPECT_EQ(JoinStringList(buffer.With(x.substr(1))), x.substr(1));
    EXPECT_EQ(JoinStringList(buffer.With(L"A\0"s + x.substr(3))), L"A\n" + x.substr(3));
    // The last string is one unit at the very end.
    EXPECT_EQ(JoinStringList(buffer.With(x.substr(2) + L'\0' + L'A')), x.substr(2) + L"\nA");
}

// --- Where it is filed ---

using FieldOfDevice = std::wstring DeviceInfo::*;

constexpr FieldOfDevice kAllFields[] = {&DeviceInfo::instanceId, &DeviceInfo::parent,
                                        &DeviceInfo::name,       &DeviceInfo::manufacturer,
                                        &DeviceInfo::className,  &DeviceInfo::description,
                                        &DeviceInfo::vendorId,   &DeviceInfo::containerId};

struct Filing {
    DEVPROPKEY key;
    FieldOfDevice target;
    bool merges;
};

std::vector<Filing> Filings() {
    return {{simulation::kParentKey, &DeviceInfo::parent, false},
            {simulation::kClassKey, &DeviceInfo::className, false},
            {simulation::kManufacturerKey, &DeviceInfo::manufacturer, false},
            {simulation::kDeviceDescKey, &DeviceInfo::description, false},
            {simulation::kContainerIdKey, &DeviceInfo::containerId, false},
            {simulation::kFriendlyNameKey, &DeviceInfo::name, true},
            {simulation::kNameKey, &DeviceInfo::name, true}};
}

/// A record whose every text is "old".
DeviceInfo FilledRecord() {
    DeviceInfo record;
    for (FieldOfDevice field : kAllFields) {
        record.*field = L"old";
    }
    return record;
}

TEST(PropertyFiling, ReplacesOrMergesOneFieldAndTouchesNoOther) {
    for (const auto& [key, target, merges] : Filings()) {
        SCOPED_TRACE(key.pid);
        for (const std::wstring text : {L"new", L"ol", L""}) {
            DeviceInfo record = FilledRecord();
            SetDeviceProperty(record, key, text);
            const std::wstring merged = text == L"new" ? L"old\nnew" : L"old";
            for (FieldOfDevice field : kAllFields) {
                EXPECT_EQ(record.*field, field != target ? L"old" : merges ? merged : text);
            }
            EXPECT_FALSE(record.isRemovable);
        }
    }
}

TEST(PropertyFiling, IgnoresKeysWhoseSetOrNumberDiffers) {
    // The numbers of one set in another.
    std::vector<DEVPROPKEY> strangers{{simulation::kParentKey.fmtid, 9},
                                      {simulation::kClassKey.fmtid, 8},
                                      {simulation::kContainerIdKey.fmtid, 13}};
    for (const Filing& filing : Filings()) {
        strangers.push_back({filing.key.fmtid, filing.key.pid + 100});
        DEVPROPKEY otherSet = filing.key;
        otherSet.fmtid.Data4[7] = static_cast<unsigned char>(otherSet.fmtid.Data4[7] ^ 1);
        strangers.push_back(otherSet);
    }
    for (const DEVPROPKEY& stranger : strangers) {
        DeviceInfo record = FilledRecord();
        SetDeviceProperty(record, stranger, L"new");
        for (FieldOfDevice field : kAllFields) {
            EXPECT_EQ(record.*field, L"old") << "pid " << stranger.pid;
        }
    }
}

}  // namespace
