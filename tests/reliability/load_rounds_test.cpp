// The plug-in loaded, started, stopped and unloaded again and again in one process.
#include <windows.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "faults/fault_table.h"
#include "faults/kept_resources.h"
#include "reliability/host_figures.h"
#include "reliability/options.h"

namespace {

using namespace reliability_test;

/// The first rounds load what the system loads on demand and fill its caches.
constexpr unsigned kFirstRounds = 10;
constexpr std::size_t kKilobytes = 256;
/// At most so many does this compiler's runtime keep in a round: two for the host's thread, and one
/// for a lock of its own at which two threads met.
constexpr std::size_t kRuntimeHandles = 3;
/// Locks of this program for which two threads have met keep one each.
constexpr std::size_t kHandles = 8;

#if defined(__GLIBCXX__)
/// In a round this compiler's runtime, which is a part of each library, keeps 72704 bytes for
/// exceptions without memory, once in the plug-in and once in the stand-in of the plug-in manager.
constexpr std::size_t kRuntimeKilobytes = 142;
#else
constexpr std::size_t kRuntimeKilobytes = 0;
#endif

TEST(Rounds, OfLoadStartStopUnloadLeaveNothingBehind) {
    const faults_test::Scenario scenario = faults_test::LoadScenario("whole_life");
    HostCourse course;
    const ULONGLONG begin = GetTickCount64();
    // Other tests of this program load the plug-in as well.
    const std::size_t keptBefore = faults_test::KeptRuntimeHandles();
    unsigned wrong = 0;
    for (unsigned round = 1; round <= TheOptions().rounds; ++round) {
        const faults_test::Played played = faults_test::PlayScenario(scenario.scene);
        if (played.outcome != scenario.outcome) {
            ++wrong;
            ADD_FAILURE() << "round " << round << ": "
                          << faults_test::Json::diff(scenario.outcome, played.outcome).dump(2);
        }
        if (round > kFirstRounds) {
            course.Sample({faults_test::KeptRuntimeHandles(), kRuntimeKilobytes * round});
        }
    }
    const std::size_t kept = faults_test::KeptRuntimeHandles() - keptBefore;
    std::printf("%u rounds in %llu ms; the compiler's runtime kept %zu handles\n",
                TheOptions().rounds, GetTickCount64() - begin, kept);
    std::string notFlat = course.Verdict({kHandles, kKilobytes});
    if (kept > kRuntimeHandles * TheOptions().rounds) {
        notFlat += "handles that the compiler's runtime kept; ";
    }
    EXPECT_EQ(notFlat, "");
    AddRow("rounds of load, Start, report, Stop, unload in one process", TheOptions().rounds,
           wrong + (notFlat.empty() ? 0 : 1));
}

}  // namespace
