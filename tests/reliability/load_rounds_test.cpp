// The plug-in loaded, started, stopped and unloaded again and again in one process.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>

#include "faults/fault_table.h"
#include "reliability/host_figures.h"
#include "reliability/options.h"

namespace {

using namespace reliability_test;

/// The first rounds load what the system loads on demand and fill its caches.
constexpr unsigned kFirstRounds = 10;
constexpr std::size_t kKilobytes = 256;
/// One handle in so many lives: a lock of the simulation for which two threads met keeps an event.
constexpr unsigned kLivesOfAHandle = 10;

#if defined(__GLIBCXX__)
/// What this compiler's runtime, which is a part of each library, does not give back when it is
/// unloaded: two handles for a thread that goes on after it used the library, the host's own here,
/// and 72704 bytes for exceptions without memory, once in the plug-in and once in the stand-in of
/// the plug-in manager.
constexpr Growth kOfRuntime{2, 142};
#else
constexpr Growth kOfRuntime{};
#endif

TEST(Rounds, OfLoadStartStopUnloadLeaveNothingBehind) {
    const faults_test::Scenario scenario = faults_test::LoadScenario("whole_life");
    HostCourse course(kOfRuntime);
    const ULONGLONG begin = GetTickCount64();
    unsigned wrong = 0;
    for (unsigned round = 1; round <= TheOptions().rounds; ++round) {
        const faults_test::Played played =
            faults_test::PlayScenario(scenario.scene, /*fault=*/std::nullopt);
        if (played.outcome != scenario.outcome) {
            ++wrong;
            ADD_FAILURE() << "round " << round << ": "
                          << faults_test::Json::diff(scenario.outcome, played.outcome).dump(2);
        }
        if (round > kFirstRounds) {
            course.Sample();
        }
    }
    std::printf("%u rounds in %llu ms\n", TheOptions().rounds, GetTickCount64() - begin);
    const std::string notFlat = course.Verdict({TheOptions().rounds / kLivesOfAHandle, kKilobytes});
    EXPECT_EQ(notFlat, "");
    AddRow("rounds of load, Start, report, Stop, unload in one process", TheOptions().rounds,
           wrong + (notFlat.empty() ? 0 : 1));
}

}  // namespace
