// The time between Start and Stop.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "host/run/plugin_session.h"
#include "host/run/run_observer.h"
#include "host/run/script.h"
#include "host/run/stop_signal.h"

namespace host {

/// What a story plays with. Everything must outlive it.
struct Stage {
    const Suite& suite;
    const std::wstring& pluginPath;
    Surroundings& surroundings;
    RunClock& clock;
    Screen& screen;
    RunObserver& observer;
};

/// Runs the plug-in for a time and plays the script meanwhile. One thread.
class Story {
public:
    explicit Story(const Stage& theStage) : stage(theStage) {}
    /// Takes the plug-in down if Play could not.
    ~Story();
    Story(const Story&) = delete;
    Story& operator=(const Story&) = delete;

    /// Returns when the plug-in is unloaded: after `duration` of machine time, or when the script
    /// or Ctrl-C ends the run. Throws RunFailed.
    void Play(std::chrono::seconds duration, const std::vector<Happening>& script);

    /// How often a run of that length shows its status; nothing for short ones.
    static std::optional<std::chrono::seconds> StatusInterval(std::chrono::seconds duration);

private:
    enum class Course { GoesOn, Ends };

    void StartPlugin();
    void StopPlugin();
    /// Says so when the plug-in's device monitor ended on its own, as it does without a word.
    void WatchMonitor();
    /// Waits until the plug-in's timer can be stopped.
    void LetTimerSettle();
    /// Waits until machine time; `Ends` when Ctrl-C came meanwhile.
    Course WaitUntil(std::chrono::seconds time);
    Course Perform(const Happening& happening);
    void ShowStatus();
    /// "3 of 10 device lists were sent".
    std::string ListsSent() const;

    const Stage stage;
    const StopSignal stopSignal;
    std::unique_ptr<PluginSession> session;
    bool monitorRuns = false;
};

}  // namespace host
