// When which report is due. The model takes from the observation when the timer ran and when the
// happenings were played; everything else it knows by itself.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "accelerated/story/findings.h"
#include "accelerated/story/observation.h"
#include "accelerated/story/world.h"

namespace story {

class PolicyModel {
public:
    /// `script` in the order in which it is played. The references must outlive the model.
    PolicyModel(const simulation::Machine& machine, const std::vector<Happening>& story,
                Observation seen, Findings& results);

    /// Goes through the whole observation once. Throws std::runtime_error where it does not fit the
    /// script at all.
    void Play();

    int deviceLists = 0;                   ///< How many were seen.
    int refusals = 0;                      ///< How often the user's answer kept one back.
    std::chrono::milliseconds timeLost{};  ///< In all runs, see rhythm.h.

private:
    /// One run of the timer's callbacks, or Start itself.
    struct Occasion {
        Time earliest;
        Time latest;  ///< For what the timer's thread does.
        Time next;    ///< The monitor's thread is done before that.
    };

    void PlayRun(const PluginRun& run, std::size_t first, std::size_t last);
    void PlayFirmwareEvents();
    void Bios(const Occasion& occasion);
    void Optimisation(const Occasion& occasion);
    void DeviceList(const Occasion& occasion);
    void Tick(const Occasion& occasion, std::size_t hour);
    void PlayLastTickUnseen(const PluginRun& run, std::chrono::hours tick);
    void FlagUnexpected(Time before);
    void FlagRest();

    std::optional<TimedEvent> TakeTimerEvent(int id, Time latest);
    /// How many happenings were played by then, the likeliest number first.
    std::vector<std::size_t> HappeningsBy(Time time) const;

    const std::vector<Happening>& script;
    const std::vector<simulation::Machine> machines;  ///< After so many happenings.
    Observation observation;
    Findings& findings;

    std::optional<Time> biosStamp;  ///< Survives restarts.
    int count = 0;                  ///< Device lists ever sent; survives restarts.

    // Of the present run:
    std::size_t firstHappening = 0;
    std::size_t lastHappening = 0;  ///< Behind the last one.
    std::vector<DeviceMap> inventories;
    bool monitorRuns = false;
    Time lastList;  ///< Or when the monitor was allowed.
};

}  // namespace story
