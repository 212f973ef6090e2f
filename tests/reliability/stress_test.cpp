// Lives in which several threads post messages, fire firmware events and plug devices in at once,
// from before Start until after Stop.
#include <windows.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "faults/loaded_plugin.h"
#include "faults/more_fakes.h"
#include "library/device_monitor/passing_hours.h"
#include "reliability/options.h"
#include "reliability/stress_threads.h"
#include "simulation/fakes/threads.h"
#include "standins/log_kit/log_kit_control.h"
#include "standins/xeevent/xeevent_control.h"
#include "support/comes_true.h"

namespace {

using namespace reliability_test;

#if defined(__clang__)
constexpr char kWhatIsTried[] = "lives under the same stress, the plug-in built by clang";
#else
constexpr char kWhatIsTried[] = "lives under a stress of messages and firmware events";
#endif
constexpr std::chrono::hours kBetweenLists{24};

struct StressTotals {
    unsigned hours = 0;
    unsigned posts = 0;
    unsigned ecEvents = 0;
    unsigned untimely = 0;
    unsigned arrivals = 0;
    std::size_t lists = 0;
};

class StressedLife {
public:
    StressedLife();
    StressedLife(const StressedLife&) = delete;
    StressedLife& operator=(const StressedLife&) = delete;

    /// Empty when it ended as it has to. Adds to the totals.
    std::string Live(unsigned hoursOfLife, std::uint64_t seed, StressTotals& totals);

private:
    static void OnLine(void* context, int level, const wchar_t* text);
    static void OnEvent(void* context, int id, const XeEventField* fields, std::size_t count);

    void Demand(bool condition, const std::string& otherwise) {
        complaint += condition ? "" : otherwise + "; ";
    }
    void RunUnderStress(StressThreads& stress, unsigned hoursOfLife);
    void CheckEvents(const StressCounts& counts, unsigned hoursOfLife);
    void CheckThreads(unsigned hoursOfLife);
    std::chrono::nanoseconds Now() { return life.World().clock.Steady().value(); }

    faults_test::LoadedPlugin life;
    std::string complaint;

    std::mutex mutex;  ///< For what follows.
    std::vector<std::chrono::nanoseconds> lists;
    unsigned ecEvents = 0;
    unsigned warnings = 0;
};

StressedLife::StressedLife() {
    LogKit_SetSink(&OnLine, this);
    XeEvent_SetSink(&OnEvent, this);
    XeEvent_SetWarningSink(
        [](void* context, const char*) {
            StressedLife& self = *static_cast<StressedLife*>(context);
            const std::lock_guard<std::mutex> lock(self.mutex);
            ++self.warnings;
        },
        this);
    life.LetMonitorGo();
}

void StressedLife::OnLine(void* context, int /*level*/, const wchar_t* text) {
    StressedLife& self = *static_cast<StressedLife*>(context);
    if (std::wstring_view(text).rfind(L"Peripheral list(", 0) == 0) {
        const std::lock_guard<std::mutex> lock(self.mutex);
        self.lists.push_back(self.Now());
    }
}

void StressedLife::OnEvent(void* context, int id, const XeEventField* /*fields*/,
                           std::size_t /*count*/) {
    StressedLife& self = *static_cast<StressedLife*>(context);
    if (id == 992614512) {
        const std::lock_guard<std::mutex> lock(self.mutex);
        ++self.ecEvents;
    } else if (id == 992614500 || id == 992614518) {
        CallbackWatch::Visit();
    }
}

void StressedLife::RunUnderStress(StressThreads& stress, unsigned hoursOfLife) {
    device_monitor_test::PassingHours hours(life.Module(), life.World());
    const CallbackWatch watch(life.Module());
    const std::chrono::nanoseconds begin = Now();
    stress.AwaitUntimely();
    stress.Enter(Phase::Starting);
    Demand(life.Plugin().Start(), "Start fails");
    Demand(hours.LoopWaits() && life.MonitorListens(), "loop or monitor do not get going");
    stress.Enter(Phase::Running);
    unsigned passed = 0;
    while (passed < hoursOfLife && hours.PassTick()) {
        ++passed;
    }
    Demand(passed == hoursOfLife, "the timer loop hangs");
    // The loop waits again, so Stop need not wait for an hour to end.
    stress.Enter(Phase::Stopping);
    Demand(life.Plugin().Stop(), "Stop fails");
    stress.Enter(Phase::Stopped);
    stress.AwaitUntimely();
    stress.Join();
    Demand(simulation::WaitForThreads(life.World(), test_support::kPatience),
           "the monitor does not end");
    Demand(CallbackWatch::Overlaps() == 0, "callbacks overlap");
    std::chrono::nanoseconds previous = begin;
    for (const std::chrono::nanoseconds list : lists) {
        Demand(list - previous >= kBetweenLists, "two lists in a day");
        previous = list;
    }
}

void StressedLife::CheckEvents(const StressCounts& counts, unsigned hoursOfLife) {
    Demand(counts.misheard == 0, std::to_string(counts.misheard) + " firmware events misheard");
    Demand(counts.neglected == 0, std::to_string(counts.neglected) + " arrivals neglected");
    Demand(ecEvents == counts.ecEvents, std::to_string(ecEvents) + " EC logs for " +
                                            std::to_string(counts.ecEvents) + " events");
    // The monitor may be late with one, but not with all of them.
    Demand(!lists.empty() && lists.size() <= hoursOfLife / 24,
           std::to_string(lists.size()) + " lists in " + std::to_string(hoursOfLife) + " hours");
    Demand(warnings == 0, std::to_string(warnings) + " warnings");
    Demand(counts.posts > hoursOfLife && counts.ecEvents > 0 && counts.arrivals > 0,
           "there was no stress");
}

void StressedLife::CheckThreads(unsigned hoursOfLife) {
    std::set<DWORD> ofMap;
    std::set<DWORD> ofTimer;
    std::size_t requests = 0;
    for (const simulation::JournalEntry& call : life.World().journal.Entries()) {
        if (call.function.rfind("SetupDi", 0) == 0 || call.function == "EnumPrintersW") {
            ofMap.insert(call.threadId);
        } else if (call.function == "PostMessageW" &&
                   call["message"] == std::to_string(kReportDevices)) {
            ofTimer.insert(call.threadId);
            ++requests;
        }
    }
    const DWORD monitor = faults_test::HeldMonitorThread::ThreadId();
    Demand(ofMap == std::set<DWORD>{monitor}, "the map is worked on by other threads");
    Demand(ofTimer.size() == 1 && ofTimer.count(monitor) == 0 &&
               ofTimer.count(GetCurrentThreadId()) == 0,
           "callbacks run on other threads than the timer's");
    Demand(requests == hoursOfLife, std::to_string(requests) + " hourly callbacks");
}

std::string StressedLife::Live(unsigned hoursOfLife, std::uint64_t seed, StressTotals& totals) {
    StressThreads stress(life.World(), seed);
    RunUnderStress(stress, hoursOfLife);
    CheckEvents(stress.counts, hoursOfLife);
    CheckThreads(hoursOfLife);
    Demand(life.Release(), "the library stays mapped");
    complaint += life.Complaint();
    totals.hours += hoursOfLife;
    totals.posts += stress.counts.posts;
    totals.ecEvents += stress.counts.ecEvents;
    totals.untimely += stress.counts.untimely;
    totals.arrivals += stress.counts.arrivals;
    totals.lists += lists.size();
    return complaint;
}

TEST(Stress, OfMessagesAndFirmwareEventsChangesNothingOfALife) {
    fuzz::Random random(TheOptions().seed, 0);
    StressTotals totals;
    unsigned wrong = 0;
    const ULONGLONG begin = GetTickCount64();
    for (unsigned life = 1; life <= TheOptions().lives; ++life) {
        const auto hours = static_cast<unsigned>(random.Between(25, 52));
        const std::string complaint = StressedLife().Live(hours, random.Bits(), totals);
        if (!complaint.empty()) {
            ++wrong;
            ADD_FAILURE() << "life " << life << " of seed " << TheOptions().seed << ": "
                          << complaint;
        }
    }
    std::printf(
        "%u lives in %llu ms: %u hours, %zu lists, %u report messages posted, %u EC events, "
        "%u firmware events before Start or after Stop, %u arrivals\n",
        TheOptions().lives, GetTickCount64() - begin, totals.hours, totals.lists, totals.posts,
        totals.ecEvents, totals.untimely, totals.arrivals);
    AddRow(kWhatIsTried, TheOptions().lives, wrong);
}

}  // namespace
