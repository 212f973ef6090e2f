#include "simulation/fakes/threads.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "simulation/call_text.h"
#include "simulation/fakes/handles.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

DWORD WINAPI Answer(void* parameter) { return *static_cast<const DWORD*>(parameter); }

DWORD WINAPI WaitAtGate(void* gate) { return WaitForSingleObject(gate, INFINITE); }

class ThreadFakes : public ::testing::Test {
protected:
    SimulatedMachine machine{
        GetModuleHandleW(nullptr), Machine(), {InstallThreadFakes, InstallHandleFakes}};
    World& world = machine.world();
    DWORD answer = 42;
};

TEST_F(ThreadFakes, RunARealThreadAndAccountForItsHandle) {
    const HANDLE thread = CreateThread(nullptr, 0, Answer, &answer, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_TRUE(world.ledger.IsOpen(ResourceKind::Thread, thread));
    EXPECT_EQ(WaitForSingleObject(thread, 10000), DWORD{WAIT_OBJECT_0});
    DWORD exitCode = 0;
    EXPECT_TRUE(GetExitCodeThread(thread, &exitCode));
    EXPECT_EQ(exitCode, 42u);
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    const JournalEntry entry = world.journal.Calls("CreateThread").at(0);
    EXPECT_EQ(entry["security"], "null");
    EXPECT_EQ(entry["stackSize"], "0");
    EXPECT_EQ(entry["start"], CallText(Answer));
    EXPECT_EQ(entry["parameter"], CallText(&answer));
    EXPECT_EQ(entry["flags"], "0");
    EXPECT_EQ(entry["threadId"], "null");
}

TEST_F(ThreadFakes, TellWhenTheThreadsHaveEnded) {
    EXPECT_TRUE(WaitForThreads(world, std::chrono::milliseconds(0)));
    const HANDLE gate = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const HANDLE thread = CreateThread(nullptr, 0, WaitAtGate, gate, 0, nullptr);
    EXPECT_TRUE(CloseHandle(thread));
    EXPECT_FALSE(WaitForThreads(world, std::chrono::milliseconds(20)));
    SetEvent(gate);
    EXPECT_TRUE(WaitForThreads(world, std::chrono::seconds(10)));
    EXPECT_TRUE(CloseHandle(gate));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(ThreadFakes, FailAsPlanned) {
    world.faults.FailCall("CreateThread", 1, 8);
    EXPECT_EQ(CreateThread(nullptr, 0, Answer, &answer, 0, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), 8u);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

}  // namespace
}  // namespace simulation
