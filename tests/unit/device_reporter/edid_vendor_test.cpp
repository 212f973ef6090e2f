#include <stdexcept>
#include <string>

#include "device_reporter/edid.h"
#include "unit/device_reporter/device_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::ParseEdidVendor;

constexpr char kOutOfBoundary[] =
    "log 3 Vendor data out of boundary(`anonymous-namespace'::ParseEdidVendor)";

/// The manufacturer bytes of three codes, in the order in which the letters are read.
std::string Bytes(unsigned first, unsigned second, unsigned third, unsigned topBit = 0) {
    const unsigned value = topBit << 15 | first << 10 | second << 5 | third;
    return {static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
}

class EdidVendor : public device_tests::DeviceTest {};

TEST_F(EdidVendor, IsThreeLettersAndANumberSign) {
    std::wstring vendor;
    EXPECT_TRUE(ParseEdidVendor("\x10\xAC", vendor));
    EXPECT_EQ(vendor, L"DEL#");
    EXPECT_TRUE(ParseEdidVendor("\x4C\x2D", vendor));
    EXPECT_EQ(vendor, L"SAM#");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidVendor, TakesTheCodes1And26InEachPlace) {
    std::wstring vendor;
    EXPECT_TRUE(ParseEdidVendor(Bytes(1, 2, 3), vendor));
    EXPECT_EQ(vendor, L"ABC#");
    EXPECT_TRUE(ParseEdidVendor(Bytes(26, 13, 14), vendor));
    EXPECT_EQ(vendor, L"ZMN#");
    EXPECT_TRUE(ParseEdidVendor(Bytes(13, 1, 14), vendor));
    EXPECT_EQ(vendor, L"MAN#");
    EXPECT_TRUE(ParseEdidVendor(Bytes(13, 26, 14), vendor));
    EXPECT_EQ(vendor, L"MZN#");
    EXPECT_TRUE(ParseEdidVendor(Bytes(13, 14, 1), vendor));
    EXPECT_EQ(vendor, L"MNA#");
    EXPECT_TRUE(ParseEdidVendor(Bytes(13, 14, 26), vendor));
    EXPECT_EQ(vendor, L"MNZ#");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidVendor, RefusesTheCodes0And27To31InEachPlace) {
    for (unsigned code : {0u, 27u, 28u, 29u, 30u, 31u}) {
        for (const std::string& bytes :
             {Bytes(code, 13, 13), Bytes(13, code, 13), Bytes(13, 13, code)}) {
            timeline.Clear();
            std::wstring vendor;
            EXPECT_FALSE(ParseEdidVendor(bytes, vendor)) << "code " << code;
            EXPECT_THAT(Log(), ElementsAre(kOutOfBoundary)) << "code " << code;
        }
    }
}

TEST_F(EdidVendor, LogsOneLineAlthoughAllThreeCodesAreBad) {
    std::wstring vendor;
    EXPECT_FALSE(ParseEdidVendor(std::string(2, '\0'), vendor));
    EXPECT_THAT(Log(), ElementsAre(kOutOfBoundary));
}

TEST_F(EdidVendor, IgnoresTheTopBit) {
    std::wstring vendor;
    EXPECT_TRUE(ParseEdidVendor(Bytes(4, 5, 12, /*topBit=*/1), vendor));
    EXPECT_EQ(vendor, L"DEL#");
}

TEST_F(EdidVendor, DecodesEveryValueAsItsDefinitionSays) {
    for (unsigned value = 0; value <= 0xFFFF; ++value) {
        const unsigned codes[] = {value >> 10 & 31, value >> 5 & 31, value & 31};
        bool valid = true;
        std::wstring letters;
        for (unsigned code : codes) {
            valid = valid && code >= 1 && code <= 26;
            letters += L"?ABCDEFGHIJKLMNOPQRSTUVWXYZ?????"[code];
        }
        const std::string bytes = {static_cast<char>(value / 256), static_cast<char>(value % 256)};
        std::wstring vendor;
        ASSERT_EQ(ParseEdidVendor(bytes, vendor), valid) << value;
        if (valid) {
            ASSERT_EQ(vendor, letters + L"#") << value;
        }
    }
}

TEST_F(EdidVendor, OfFewerThanTwoBytesIsOutOfRange) {
    std::wstring vendor;
    EXPECT_THROW(ParseEdidVendor("", vendor), std::out_of_range);
    EXPECT_THROW(ParseEdidVendor("\x10", vendor), std::out_of_range);
    EXPECT_THAT(Log(), IsEmpty());
}

}  // namespace
