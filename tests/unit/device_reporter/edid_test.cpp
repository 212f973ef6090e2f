#include "device_reporter/edid.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::ParseEdidVendor;
using DeviceReporter::PushEdidToData;

constexpr char kOutOfBoundary[] =
    "log 3 Vendor data out of boundary(`anonymous-namespace'::ParseEdidVendor)";

/// Bytes 0, 1, 2, ... with the manufacturer "DEL" at its place.
std::string CountingEdid(std::size_t size) {
    std::string edid;
    for (std::size_t i = 0; i < size; ++i) {
        edid += static_cast<char>(i);
    }
    edid.replace(8, 2, "\x10\xAC");
    return edid;
}

class Edid : public device_tests::DeviceTest {
protected:
    std::vector<std::wstring> data;
    std::wstring vendor;
};

TEST_F(Edid, IsItsHexTextWithBytes12And13HiddenThenItsManufacturer) {
    std::string edid(16, '\xFF');
    edid.replace(8, 2, "\x10\xAC");
    EXPECT_TRUE(PushEdidToData(data, edid));
    EXPECT_THAT(data, ElementsAre(L"FFFFFFFFFFFFFFFF10ACFFFF0000FFFF", L"DEL#"));
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(Edid, HasAllBytesWhateverItsLength) {
    // It may end before, within and behind the hidden bytes, and have extensions.
    for (const std::size_t size : {10u, 12u, 13u, 14u, 15u, 128u, 256u}) {
        data.clear();
        EXPECT_TRUE(PushEdidToData(data, CountingEdid(size)));
        std::wstring hex;
        for (std::size_t i = 0; i < size; ++i) {
            const auto byte = static_cast<unsigned char>(CountingEdid(size)[i]);
            const wchar_t* const digits = L"0123456789ABCDEF";
            hex += i == 12 || i == 13 ? L"00" : std::wstring{digits[byte / 16], digits[byte % 16]};
        }
        EXPECT_THAT(data, ElementsAre(hex, L"DEL#"));
    }
}

TEST_F(Edid, IsAppended) {
    data = {L"before"};
    EXPECT_TRUE(PushEdidToData(data, std::string(8, '\0') + "\x10\xAC"));
    EXPECT_THAT(data, ElementsAre(L"before", L"000000000000000010AC", L"DEL#"));
}

TEST_F(Edid, IsLeftOutWhenItsManufacturerIsNone) {
    EXPECT_FALSE(PushEdidToData(data, std::string(128, '\0')));
    EXPECT_THAT(data, IsEmpty());
    // One line although all three letters are bad.
    EXPECT_THAT(Log(), ElementsAre(kOutOfBoundary,
                                   "log 3 ParseEdidVendor failed!"
                                   "(`anonymous-namespace'::PushEdidToData)"));
}

TEST_F(Edid, OfFewerThanTenBytesIsOutOfRange) {
    for (std::size_t size = 0; size < 10; ++size) {
        EXPECT_THROW(PushEdidToData(data, std::string(size, '\x11')), std::out_of_range) << size;
    }
    EXPECT_THROW(ParseEdidVendor("\x10", vendor), std::out_of_range);
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(Edid, HasAManufacturerOfThreeLettersInFiveBitsEachAndATopBitThatMeansNothing) {
    for (unsigned value = 0; value <= 0xFFFF; ++value) {
        const unsigned codes[] = {value >> 10 & 31, value >> 5 & 31, value & 31};
        bool valid = true;
        std::wstring letters;
        for (unsigned code : codes) {
            valid = valid && code >= 1 && code <= 26;
            letters += L"?ABCDEFGHIJKLMNOPQRSTUVWXYZ?????"[code];
        }
        const std::string bytes = {static_cast<char>(value / 256), static_cast<char>(value % 256)};
        timeline.Clear();
        ASSERT_EQ(ParseEdidVendor(bytes, vendor), valid) << value;
        if (valid) {
            ASSERT_EQ(vendor, letters + L"#") << value;
            ASSERT_TRUE(Log().empty()) << value;
        } else {
            ASSERT_EQ(Log(), std::vector<std::string>{kOutOfBoundary}) << value;
        }
    }
}

}  // namespace
