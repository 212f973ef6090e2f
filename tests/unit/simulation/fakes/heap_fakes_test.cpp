#include "simulation/fakes/heap.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <memory>
#include <new>
#include <thread>

#include "sample_machine.h"
#include "simulation/call_text.h"
#include "simulation/fakes/print_spooler.h"
#include "simulation/simulated_machine.h"

#include <winspool.h>

namespace simulation {
namespace {

constexpr std::size_t kSize = 4711;

/// Not for the optimiser: it may leave out blocks that nobody uses.
bool CanTake(std::size_t size) {
    const std::unique_ptr<BYTE[]> block(new (std::nothrow) BYTE[size]);
    volatile BYTE* const used = block.get();
    return used != nullptr;
}

class HeapFakes : public ::testing::Test {
protected:
    SimulatedMachine machine{
        GetModuleHandleW(nullptr), PrinterMachine(), {InstallHeapFakes, InstallPrintSpoolerFakes}};
    World& world = machine.world();
};

TEST_F(HeapFakes, AccountForGlobalMemory) {
    const HGLOBAL block = GlobalAlloc(GMEM_ZEROINIT, 100);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(world.ledger.IsOpen(ResourceKind::HeapBlock, block));
    EXPECT_EQ(GlobalFree(block), nullptr);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    const std::vector<JournalEntry> calls = world.journal.Entries();
    EXPECT_EQ(calls.at(0)["flags"], std::to_string(GMEM_ZEROINIT));
    EXPECT_EQ(calls.at(0)["size"], "100");
    EXPECT_EQ(calls.at(1)["block"], CallText(block));
    EXPECT_EQ(calls.at(1).error, 0u);
}

TEST_F(HeapFakes, RefuseGlobalMemoryAsPlanned) {
    world.faults.FailCall("GlobalAlloc", 1, 8);
    EXPECT_EQ(GlobalAlloc(GMEM_ZEROINIT, 100), nullptr);
    EXPECT_EQ(GetLastError(), 8u);
    const HGLOBAL block = GlobalAlloc(GMEM_ZEROINIT, 100);
    world.faults.FailCall("GlobalFree", 1, 6);
    EXPECT_EQ(GlobalFree(block), block);
    EXPECT_EQ(GetLastError(), 6u);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::HeapBlock), 1u);
    EXPECT_EQ(GlobalFree(block), nullptr);
}

TEST_F(HeapFakes, RefuseBlocksOfTheChosenSizeOnly) {
    {
        const MallocFailure failure(kSize);
        EXPECT_FALSE(CanTake(kSize));
        EXPECT_TRUE(CanTake(kSize - 1));
        EXPECT_TRUE(CanTake(kSize + 1));
        EXPECT_FALSE(CanTake(kSize));
        EXPECT_EQ(failure.Count(), 2u);
    }
    EXPECT_TRUE(CanTake(kSize));
}

TEST_F(HeapFakes, KeepTheLastErrorWhenTheyRefuse) {
    const MallocFailure failure(kSize);
    SetLastError(1234);
    EXPECT_EQ(std::malloc(kSize), nullptr);
    EXPECT_EQ(GetLastError(), 1234u);
}

TEST_F(HeapFakes, RefuseBlocksOnEveryThread) {
    const MallocFailure failure(kSize);
    bool taken = true;
    std::thread([&] { taken = CanTake(kSize); }).join();
    EXPECT_FALSE(taken);
}

// A list of arguments grows through blocks of exactly these sizes.
TEST_F(HeapFakes, ServeTheFakesThemselves) {
    for (const std::size_t size : {64u, 128u, 256u, 512u, 1024u}) {
        DWORD needed = 0;
        DWORD returned = 0;
        const MallocFailure failure(size);
        EXPECT_FALSE(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &returned));
        EXPECT_EQ(failure.Count(), 0u) << size;
    }
    EXPECT_EQ(world.journal.Count("EnumPrintersW"), 5u);
}

TEST(MallocFailureAlone, HasNoEffectWithoutASimulatedMachine) {
    const MallocFailure failure(kSize);
    EXPECT_TRUE(CanTake(kSize));
}

}  // namespace
}  // namespace simulation
