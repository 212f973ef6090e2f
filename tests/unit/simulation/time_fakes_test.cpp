#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <ctime>

#include "simulation/fakes/time_sources.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

Machine WithClocks(Clocks clocks) {
    Machine machine;
    machine.clocks = clocks;
    return machine;
}

class TimeFakes : public ::testing::Test {
protected:
    static constexpr std::int64_t kStart = 1'700'000'000;

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), WithClocks({kStart, 5'000'000'000}), {InstallTimeFakes}};
    World& world = machine.world();
};

TEST_F(TimeFakes, StandStillAtTheMachinesTime) {
    __time64_t stored = 0;
    EXPECT_EQ(_time64(&stored), kStart);
    EXPECT_EQ(stored, kStart);
    Sleep(20);
    EXPECT_EQ(_time64(nullptr), kStart);
    EXPECT_EQ(steady_clock::now().time_since_epoch(), std::chrono::seconds(5));
}

TEST_F(TimeFakes, AdvanceBothClocks) {
    world.clock.Advance(hours(24) + milliseconds(1500));
    EXPECT_EQ(_time64(nullptr), kStart + 86401);
    EXPECT_EQ(steady_clock::now().time_since_epoch(), hours(24) + milliseconds(6500));
}

TEST_F(TimeFakes, GiveFileTimesThatTheSystemUnderstands) {
    FILETIME fileTime;
    GetSystemTimeAsFileTime(&fileTime);
    SYSTEMTIME date;
    ASSERT_TRUE(FileTimeToSystemTime(&fileTime, &date));
    EXPECT_EQ(date.wYear, 2023);
    EXPECT_EQ(date.wMonth, 11);
    EXPECT_EQ(date.wDay, 14);
    EXPECT_EQ(date.wHour, 22);
    EXPECT_EQ(date.wMinute, 13);
    EXPECT_EQ(date.wSecond, 20);
}

TEST_F(TimeFakes, CountYearsOfSteadyTimeWithoutOverflow) {
    world.clock.SetSteady(hours(24 * 365 * 100));
    EXPECT_EQ(steady_clock::now().time_since_epoch(), hours(24 * 365 * 100));
}

TEST_F(TimeFakes, FailAsPlanned) {
    world.faults.FailCall("_time64", 1, 0);
    EXPECT_EQ(_time64(nullptr), -1);
    EXPECT_EQ(_time64(nullptr), kStart);
}

TEST(RealTime, PassesWhereNoClockIsSet) {
    const __time64_t before = _time64(nullptr);
    SimulatedMachine machine(GetModuleHandleW(nullptr), Machine(), {InstallTimeFakes});
    EXPECT_GE(_time64(nullptr), before);
    EXPECT_LE(_time64(nullptr), before + 5);
    const auto steadyBefore = steady_clock::now();
    Sleep(20);
    EXPECT_GT(steady_clock::now(), steadyBefore);
    machine.world().clock.Advance(hours(1));
    EXPECT_LE(_time64(nullptr), before + 5) << "only clocks that were set can be advanced";
    machine.world().clock.SetUnixSeconds(7);
    EXPECT_EQ(_time64(nullptr), 7);
}

}  // namespace
}  // namespace simulation
