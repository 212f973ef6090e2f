// The built plug-in on a machine whose hours pass at command, with all that can happen to it.
#pragma once

#include <windows.h>

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "faults/loaded_plugin.h"
#include "library/device_monitor/passing_hours.h"
#include "reliability/soak_model.h"
#include "standins/xeevent/xeevent_control.h"

namespace reliability_test {

/// Keeps nothing of the hours that are over, so that what grows is the plug-in's.
class SoakedPlugin {
public:
    SoakedPlugin();
    SoakedPlugin(const SoakedPlugin&) = delete;
    SoakedPlugin& operator=(const SoakedPlugin&) = delete;

    /// End the program with a message when something hangs.
    Sent Start();
    Sent Pass(const Hour& hour, bool monitorRuns, bool monitorEnds);
    /// Stops and unloads; empty, or what was left behind.
    std::string End();

    /// The timer loop's turns so far.
    unsigned LoopTurns() const { return loopTurns; }
    std::optional<std::int64_t> StoredListCount() const;

private:
    static void OnLine(void* context, int level, const wchar_t* text);
    static void OnEvent(void* context, int id, const XeEventField* fields, std::size_t count);

    void Happen(const Hour& hour, bool monitorRuns);
    void PlanFaults(const Hour& hour);
    void AwaitMonitor(bool monitorEnds);
    Sent TakeSent();

    faults_test::LoadedPlugin life;
    std::optional<simulation::ImportRedirection> dates;
    std::optional<device_monitor_test::PassingHours> hours;
    bool switchesExist = true;

    std::mutex mutex;  ///< For what follows.
    Sent sent;
    std::string lists;  ///< Text of this hour's.
    unsigned loopTurns = 0;
    unsigned surprises = 0;  ///< Events that nobody expects at all, and warnings.
};

}  // namespace reliability_test
