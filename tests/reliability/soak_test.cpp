// Weeks in the life of the plug-in: each hour's events are those of the model, and its process has
// nothing more at the end than in the middle.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>

#include "reliability/host_figures.h"
#include "reliability/options.h"
#include "reliability/soaked_plugin.h"

namespace {

using namespace reliability_test;

/// The first days fill caches.
constexpr unsigned kFirstDays = 3;
constexpr unsigned kListsBefore = 2;
constexpr Growth kSlack{0, 256};

struct Totals {
    unsigned wrong = 0;
    unsigned bios = 0;
    unsigned optimisation = 0;
    unsigned ecLogs = 0;
    unsigned lists = 0;
    unsigned refusals = 0;

    void Compare(unsigned hour, const Sent& expected, const Sent& sent) {
        bios += sent.bios;
        optimisation += sent.optimisation.empty() ? 0 : 1;
        ecLogs += sent.ecLogs;
        lists += sent.lists;
        refusals += sent.refusedForConsent;
        if (sent.Text() != expected.Text()) {
            ++wrong;
            ADD_FAILURE() << "hour " << hour << " of seed " << TheOptions().seed << "\nexpected "
                          << expected.Text() << "\nsent     " << sent.Text();
        }
    }
};

TEST(Soak, MatchesTheModelHourByHourAndKeepsNothing) {
    const unsigned ticks = TheOptions().days * 24;
    std::printf("seed %llu\n", static_cast<unsigned long long>(TheOptions().seed));
    fuzz::Random random(TheOptions().seed, 0);
    SoakModel model(kListsBefore);
    SoakedPlugin plugin;
    HostCourse course;
    Totals totals;
    unsigned oddTurns = 0;
    const auto begin = std::chrono::steady_clock::now();
    totals.Compare(0, model.Start(), plugin.Start());
    for (unsigned tick = 1; tick <= ticks; ++tick) {
        const Hour hour = RandomHour(random);
        const bool monitorRuns = model.MonitorRuns();
        const Sent expected = model.Pass(hour);
        totals.Compare(tick, expected,
                       plugin.Pass(hour, monitorRuns, monitorRuns != model.MonitorRuns()));
        oddTurns += plugin.LoopTurns() == tick + 1 ? 0 : 1;
        if (tick % 24 == 0 && tick / 24 > kFirstDays) {
            course.Sample();
        }
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::printf(
        "%u days in %.1f s: %u BIOS, %u optimisation, %u EC logs, %u lists, %u refusals; "
        "%u loop turns\n",
        TheOptions().days, seconds.count(), totals.bios, totals.optimisation, totals.ecLogs,
        totals.lists, totals.refusals, plugin.LoopTurns());
    EXPECT_EQ(oddTurns, 0u) << "the loop woke more or less than once per tick";
    EXPECT_EQ(plugin.StoredListCount(), model.ListCount());
    const std::string notFlat = course.Verdict(kSlack);
    EXPECT_EQ(notFlat, "");
    const std::string leftBehind = plugin.End();
    EXPECT_EQ(leftBehind, "");
    AddRow("hours of the soak", ticks, totals.wrong);
    AddRow("wakes of the timer loop in the soak", plugin.LoopTurns(), oddTurns);
    AddRow("figures of the process during the soak", 4,
           notFlat.empty() && leftBehind.empty() ? 0 : 1);
}

}  // namespace
