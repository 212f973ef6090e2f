// From the registry to the EDID's text and manufacturer.
#include <stdexcept>
#include <string>
#include <vector>

#include "device_reporter/edid_registry.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_displays.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::GetDataFromReg;
using simulation::FaultVariant;

constexpr wchar_t kPath[] =
    L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\DEL0001\\5&2a3b4c&0&UID4351\\Device Parameters";
constexpr char kNoValue[] = "log 3 GetValueFromReg failed!(`anonymous-namespace'::GetDataFromReg)";

class EdidData : public device_tests::MachineTest {
protected:
    EdidData() { machine.display.paths = {device_tests::SampleDisplay(1)}; }

    std::vector<std::wstring> data;
};

TEST_F(EdidData, AreTheTextThenTheManufacturer) {
    machine.display.paths[0].edid = device_tests::SampleEdid(15);
    EXPECT_TRUE(GetDataFromReg(kPath, data));
    EXPECT_THAT(data, ElementsAre(L"010203040506070810AC0B0C00000F", L"DEL#"));
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidData, AreAppended) {
    data = {L"before"};
    EXPECT_TRUE(GetDataFromReg(kPath, data));
    ASSERT_EQ(data.size(), 3u);
    EXPECT_EQ(data[0], L"before");
    EXPECT_EQ(data[1].size(), 256u);
    EXPECT_EQ(data[2], L"DEL#");
}

TEST_F(EdidData, AreMissingWhenTheValueIs) {
    machine.display.paths[0].edid = std::vector<BYTE>();
    EXPECT_FALSE(GetDataFromReg(kPath, data));
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(Log(),
                ElementsAre("log 3 RegQuery max Edid value length Failed, maxValueLength is 0"
                            "(`anonymous-namespace'::GetValueFromReg)",
                            kNoValue));
}

TEST_F(EdidData, AreMissingWhenTheValueVanishesBetweenTheQueries) {
    Fail("RegQueryValueExA", 2, ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(GetDataFromReg(kPath, data));
    EXPECT_THAT(Log(), ElementsAre(kNoValue));
}

TEST_F(EdidData, AreMissingWhenTheValueBecomesEmptyBetweenTheQueries) {
    Fail("RegQueryValueExA", 2, 0, FaultVariant::ShortSize);
    EXPECT_FALSE(GetDataFromReg(kPath, data));
    EXPECT_THAT(Log(), ElementsAre(kNoValue));
}

TEST_F(EdidData, AreMissingWhenTheManufacturerIsNone) {
    machine.display.paths[0].edid = std::vector<BYTE>(128);
    EXPECT_FALSE(GetDataFromReg(kPath, data));
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(
        Log(),
        ElementsAre("log 3 Vendor data out of boundary(`anonymous-namespace'::ParseEdidVendor)",
                    "log 3 ParseEdidVendor failed!(`anonymous-namespace'::PushEdidToData)",
                    "log 3 PushEdidToData failed!(`anonymous-namespace'::GetDataFromReg)"));
}

TEST_F(EdidData, OfFewerThanTenBytesAreOutOfRangeWithTheKeyClosed) {
    for (std::size_t size : {1u, 7u, 8u, 9u}) {
        machine.display.paths[0].edid = device_tests::SampleEdid(size);
        EXPECT_THROW(GetDataFromReg(kPath, data), std::out_of_range) << size;
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    }
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

}  // namespace
