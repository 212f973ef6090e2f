// The two-call protocol of the printer list and of the driver information.
#include <memory>
#include <string>

#include "device_reporter/printer_info.h"
#include "simulation/fakes/heap.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/spooler_script.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using device_tests::SpoolerScript;

struct QueryKind {
    const char* name;
    bool (*run)(std::unique_ptr<BYTE[]>& block);
    std::string function;
    std::string secondCallFailed;
};

bool RunList(std::unique_ptr<BYTE[]>& block) {
    DWORD count = 0;
    return DeviceReporter::EnumPrinterList(block, count);
}

bool RunDriver(std::unique_ptr<BYTE[]>& block) {
    return DeviceReporter::GetPrinterDriverInfo(nullptr, block);
}

class SpoolerQuery : public device_tests::MachineTest,
                     public testing::WithParamInterface<QueryKind> {
protected:
    bool Run() { return GetParam().run(block); }

    std::string Line(const std::string& text) const {
        return "log 3 " + text + "(" + GetParam().function + ")";
    }

    std::unique_ptr<BYTE[]> block;
};

INSTANTIATE_TEST_SUITE_P(
    Each, SpoolerQuery,
    testing::Values(QueryKind{"PrinterList", RunList, "DeviceReporter::EnumPrinterList",
                              "EnumPrinters fail 2, lastError="},
                    QueryKind{"PrinterDriver", RunDriver, "DeviceReporter::GetPrinterDriverInfo",
                              "GetPrinterDriver fail 2, lastError="}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(SpoolerQuery, IsDoneWithoutABlockWhenTheFirstCallSucceeds) {
    const SpoolerScript spooler({{ERROR_SUCCESS, 500, 3}});
    EXPECT_TRUE(Run());
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(spooler.Calls().at(0).block, nullptr);
    EXPECT_EQ(spooler.Calls().at(0).size, 0u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(SpoolerQuery, DoesNotTakeAnEarlierBlockForItsResult) {
    block.reset(new BYTE[1]);
    const SpoolerScript spooler({{ERROR_SUCCESS, 500, 3}});
    EXPECT_TRUE(Run());
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(SpoolerQuery, EndsWhenTheFirstCallFailsForAnotherReasonThanTheSize) {
    const SpoolerScript spooler({{RPC_S_SERVER_UNAVAILABLE, 500, 0}});
    EXPECT_FALSE(Run());
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(Log(), ElementsAre(Line("lastError != ERROR_INSUFFICIENT_BUFFER, lastError=1722")));
}

TEST_P(SpoolerQuery, LogsErrorNumbersUnsigned) {
    const SpoolerScript spooler({{0x80070005, 500, 0}});
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(),
                ElementsAre(Line("lastError != ERROR_INSUFFICIENT_BUFFER, lastError=2147942405")));
}

TEST_P(SpoolerQuery, EndsWhenNoSizeIsNeeded) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 0, 0}});
    EXPECT_FALSE(Run());
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(Log(), ElementsAre(Line("ERROR_INSUFFICIENT_BUFFER, but dwNeeded=0")));
}

TEST_P(SpoolerQuery, TakesTheNeededSizeForZeroWhenItIsNotTold) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, std::nullopt, std::nullopt}});
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line("ERROR_INSUFFICIENT_BUFFER, but dwNeeded=0")));
}

TEST_P(SpoolerQuery, EndsWithoutMemory) {
    constexpr DWORD kNeeded = 172'201;
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, kNeeded, 0}});
    const simulation::MallocFailure refusal(kNeeded);
    EXPECT_FALSE(Run());
    EXPECT_EQ(refusal.Count(), 1u);
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(Log(), ElementsAre(Line("cannot create printer byte buffer, dwNeeded=172201")));
}

TEST_P(SpoolerQuery, OffersOneClearedBlockOfExactlyTheNeededSize) {
    constexpr DWORD kNeeded = 777;
    device_tests::LitterHeap(kNeeded);
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, kNeeded, 0}, {ERROR_SUCCESS, kNeeded, 1}});
    EXPECT_TRUE(Run());
    ASSERT_EQ(spooler.Calls().size(), 2u);
    EXPECT_EQ(spooler.Calls()[1].block, block.get());
    EXPECT_EQ(spooler.Calls()[1].size, kNeeded);
    EXPECT_TRUE(spooler.Calls()[1].blockIsClear);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(SpoolerQuery, LeavesTheBlockToTheCallerWhenTheSecondCallFails) {
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, 500, 0}, {ERROR_ACCESS_DENIED, 600, 1}});
    EXPECT_FALSE(Run());
    EXPECT_NE(block, nullptr);
    EXPECT_THAT(Log(), ElementsAre(Line(GetParam().secondCallFailed + "5")));
}

TEST_P(SpoolerQuery, DoesNotAskAThirdTimeWhenTheSizeGrewMeanwhile) {
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, 500, 0}, {ERROR_INSUFFICIENT_BUFFER, 600, 0}});
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line(GetParam().secondCallFailed + "122")));
}

}  // namespace
