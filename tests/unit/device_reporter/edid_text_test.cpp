#include <stdexcept>
#include <string>
#include <vector>

#include "device_reporter/edid.h"
#include "unit/device_reporter/device_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::PushEdidToData;

/// Bytes 0, 1, 2, ... with the manufacturer "DEL" at its place.
std::string CountingEdid(std::size_t size) {
    std::string edid;
    for (std::size_t i = 0; i < size; ++i) {
        edid += static_cast<char>(i);
    }
    edid.replace(8, 2, "\x10\xAC");
    return edid;
}

class EdidText : public device_tests::DeviceTest {
protected:
    std::vector<std::wstring> data;
};

TEST_F(EdidText, IsFollowedByTheManufacturer) {
    EXPECT_TRUE(PushEdidToData(data, std::string("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00\x10\xAC", 10)));
    EXPECT_THAT(data, ElementsAre(L"00FFFFFFFFFFFF0010AC", L"DEL#"));
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidText, HidesBytes12And13AndNoOthers) {
    EXPECT_TRUE(PushEdidToData(data, CountingEdid(16)));
    EXPECT_THAT(data, ElementsAre(L"000102030405060710AC0A0B00000E0F", L"DEL#"));
}

TEST_F(EdidText, HidesWhateverBytes12And13Hold) {
    std::string edid(16, '\xFF');
    edid.replace(8, 2, "\x10\xAC");
    EXPECT_TRUE(PushEdidToData(data, edid));
    EXPECT_EQ(data.at(0), L"FFFFFFFFFFFFFFFF10ACFFFF0000FFFF");
}

TEST_F(EdidText, HasAllBytesOfTheMainBlockAndOfItsExtensions) {
    for (std::size_t size : {127u, 128u, 256u, 384u}) {
        data.clear();
        const std::string edid = CountingEdid(size);
        EXPECT_TRUE(PushEdidToData(data, edid));
        ASSERT_EQ(data.size(), 2u);
        const std::wstring& hex = data[0];
        ASSERT_EQ(hex.size(), size * 2);
        EXPECT_EQ(hex.substr(24, 4), L"0000");
        for (std::size_t i = 0; i < size; ++i) {
            const auto byte = static_cast<unsigned char>(edid[i]);
            const wchar_t* const digits = L"0123456789ABCDEF";
            const std::wstring expected = {digits[byte / 16], digits[byte % 16]};
            EXPECT_EQ(hex.substr(i * 2, 2), i == 12 || i == 13 ? L"00" : expected) << "byte " << i;
        }
        EXPECT_EQ(data[1], L"DEL#");
    }
}

TEST_F(EdidText, MayEndBeforeWithinOrBehindTheHiddenBytes) {
    const wchar_t* const whole = L"000102030405060710AC0A0B00000E";
    for (std::size_t size = 10; size <= 15; ++size) {
        data.clear();
        EXPECT_TRUE(PushEdidToData(data, CountingEdid(size)));
        EXPECT_THAT(data, ElementsAre(std::wstring(whole, size * 2), L"DEL#"));
    }
}

TEST_F(EdidText, IsAppendedToWhatIsThere) {
    data = {L"before"};
    EXPECT_TRUE(PushEdidToData(data, std::string(8, '\0') + "\x10\xAC"));
    EXPECT_THAT(data, ElementsAre(L"before", L"000000000000000010AC", L"DEL#"));
}

TEST_F(EdidText, IsLeftOutWhenTheManufacturerIsNone) {
    EXPECT_FALSE(PushEdidToData(data, std::string(128, '\0')));
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(
        Log(),
        ElementsAre("log 3 Vendor data out of boundary(`anonymous-namespace'::ParseEdidVendor)",
                    "log 3 ParseEdidVendor failed!(`anonymous-namespace'::PushEdidToData)"));
}

TEST_F(EdidText, OfFewerThanTenBytesIsOutOfRange) {
    for (std::size_t size = 0; size < 10; ++size) {
        EXPECT_THROW(PushEdidToData(data, std::string(size, '\x11')), std::out_of_range) << size;
    }
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

}  // namespace
