// The two-call protocol of the printer list and of the driver information.
#include "device_reporter/spooler_query.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "device_reporter/printer_info.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/spooler_script.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using device_tests::SpoolerScript;
using DeviceReporter::EnumPrinterList;
using DeviceReporter::GetPrinterDriverInfo;

// --- Both queries ---

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
    // An earlier block is not taken for the result.
    block.reset(new BYTE[1]);
    const SpoolerScript spooler({{ERROR_SUCCESS, 500, 3}});
    EXPECT_TRUE(Run());
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(spooler.Calls().at(0).block, nullptr);
    EXPECT_EQ(spooler.Calls().at(0).size, 0u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(SpoolerQuery, LogsErrorNumbersUnsigned) {
    const SpoolerScript spooler({{0x80070005, 500, 0}});
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(),
                ElementsAre(Line("lastError != ERROR_INSUFFICIENT_BUFFER, lastError=2147942405")));
}

TEST_P(SpoolerQuery, TakesTheNeededSizeForZeroWhenItIsNotTold) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, std::nullopt, std::nullopt}});
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line("ERROR_INSUFFICIENT_BUFFER, but dwNeeded=0")));
}

void LitterHeap(std::size_t size) {
    std::vector<void*> blocks(64);
    for (void*& block : blocks) {
        block = std::malloc(size);
        if (block != nullptr) {
            std::memset(block, 0xCC, size);
        }
    }
    for (void* block : blocks) {
        std::free(block);
    }
}

TEST_P(SpoolerQuery, OffersOneClearedBlockOfExactlyTheNeededSize) {
    constexpr DWORD kNeeded = 777;
    LitterHeap(kNeeded);
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, kNeeded, 0}, {ERROR_SUCCESS, kNeeded, 1}});
    EXPECT_TRUE(Run());
    ASSERT_EQ(spooler.Calls().size(), 2u);
    EXPECT_EQ(spooler.Calls()[1].block, block.get());
    EXPECT_EQ(spooler.Calls()[1].size, kNeeded);
    EXPECT_TRUE(spooler.Calls()[1].blockIsClear);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(SpoolerQuery, DoesNotAskAThirdTimeAndLeavesTheBlockWhenTheSizeGrewMeanwhile) {
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, 500, 0}, {ERROR_INSUFFICIENT_BUFFER, 600, 0}});
    EXPECT_FALSE(Run());
    EXPECT_NE(block, nullptr);
    EXPECT_THAT(Log(), ElementsAre(Line(GetParam().secondCallFailed + "122")));
}

// --- The list ---

struct ListAnswer {
    DWORD blockSize;
    DWORD told;
    DWORD entries;
    bool isAccepted;
};

class PrinterList : public device_tests::MachineTest {};

TEST_F(PrinterList, NeedsRoomForItsEntriesInItsBlockAndInTheSizeThatIsTold) {
    for (const auto& [blockSize, told, entries, isAccepted] : {
             ListAnswer{272, 272, 2, true},
             ListAnswer{272, 0, 0, true},
             ListAnswer{500, 271, 2, false},
             ListAnswer{272, 136, 2, false},
             ListAnswer{271, 272, 2, false},
             // Times 136 this is 17 * 2^32, of which 32 bits would hold zero.
             ListAnswer{272, 272, 0x20000000, false},
             ListAnswer{272, 0x80000000, 0xFFFFFFFF, false},
         }) {
        timeline.Clear();
        std::unique_ptr<BYTE[]> list;
        DWORD count = 99;
        const SpoolerScript spooler(
            {{ERROR_INSUFFICIENT_BUFFER, blockSize, 0}, {ERROR_SUCCESS, told, entries}});
        EXPECT_EQ(EnumPrinterList(list, count), isAccepted);
        EXPECT_EQ(count, isAccepted ? entries : 0);
        EXPECT_NE(list, nullptr);
        const std::string line =
            "log 3 printer list data error, dwReturned=" + std::to_string(entries) +
            ", dwNeeded=" + std::to_string(told) + "(DeviceReporter::EnumPrinterList)";
        EXPECT_EQ(Log(), isAccepted ? std::vector<std::string>{} : std::vector{line});
    }
}

TEST_F(PrinterList, HasNoEntriesWithoutABlockOrAfterAFailureWhateverCountIsTold) {
    std::unique_ptr<BYTE[]> list;
    DWORD count = 99;
    {
        const SpoolerScript spooler({{ERROR_SUCCESS, 272, 2}});
        EXPECT_TRUE(EnumPrinterList(list, count));
        EXPECT_EQ(count, 0u);
    }
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 272, 2}, {ERROR_BUSY, 272, 2}});
    EXPECT_FALSE(EnumPrinterList(list, count));
    EXPECT_EQ(count, 0u);
}

TEST_F(PrinterList, IsAskedForTheLocalQueuesAtLevelTwo) {
    std::unique_ptr<BYTE[]> list;
    DWORD count = 0;
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 300, {}}, {ERROR_SUCCESS, 300, 0}});
    EXPECT_TRUE(EnumPrinterList(list, count));
    for (const device_tests::SpoolerCall& call : spooler.Calls()) {
        EXPECT_EQ(call.flags, 2u);
        EXPECT_EQ(call.text, nullptr);
        EXPECT_EQ(call.level, 2u);
    }
}

// --- The driver information ---

struct DriverAnswer {
    DWORD blockSize;
    std::optional<DWORD> told;  ///< Of the second call; absent where it tells none.
    bool isAccepted;
};

class PrinterDriverInfo : public device_tests::MachineTest {};

TEST_F(PrinterDriverInfo, NeedsRoomForItsStructureInItsBlockAndInTheSizeThatIsTold) {
    for (const auto& [blockSize, told, isAccepted] :
         {DriverAnswer{300, 136, true}, DriverAnswer{300, 135, false},
          DriverAnswer{135, 300, false}, DriverAnswer{300, std::nullopt, false}}) {
        timeline.Clear();
        std::unique_ptr<BYTE[]> info;
        const SpoolerScript spooler(
            {{ERROR_INSUFFICIENT_BUFFER, blockSize, {}}, {ERROR_SUCCESS, told, {}}});
        EXPECT_EQ(GetPrinterDriverInfo(nullptr, info), isAccepted);
        EXPECT_NE(info, nullptr);
        const std::string line =
            "log 3 printer driver data error, dwReturned=" + std::to_string(told.value_or(0)) +
            ", dwNeeded=" + std::to_string(blockSize) + "(DeviceReporter::GetPrinterDriverInfo)";
        EXPECT_EQ(Log(), isAccepted ? std::vector<std::string>{} : std::vector{line});
    }
}

TEST_F(PrinterDriverInfo, IsAskedForAtLevelSixOfTheDefaultEnvironment) {
    auto* const printer = reinterpret_cast<HANDLE>(0x1234);
    std::unique_ptr<BYTE[]> info;
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 300, {}}, {ERROR_SUCCESS, 300, {}}});
    EXPECT_TRUE(GetPrinterDriverInfo(printer, info));
    for (const device_tests::SpoolerCall& call : spooler.Calls()) {
        EXPECT_EQ(call.printer, printer);
        EXPECT_EQ(call.text, nullptr);
        EXPECT_EQ(call.level, 6u);
    }
}

}  // namespace
