#include "accelerated/story/policy_model.h"

#include <stdexcept>
#include <utility>

#include "accelerated/story/reports.h"
#include "accelerated/story/rhythm.h"

namespace story {
namespace {

using std::chrono::hours;

constexpr int kMostLists = 10;
constexpr hours kBiosSpacing{72};
constexpr hours kListSpacing{24};
constexpr std::size_t kBiosHours = 12;
constexpr std::size_t kOptimisationHours = 24;

constexpr char kRefusalEnd[] = "(DeviceReporter::ReportDeviceInfo::DoReportDevices)";

bool Is(const Happening& happening, const char* what) { return happening.at("do") == what; }

}  // namespace

PolicyModel::PolicyModel(const simulation::Machine& machine, const std::vector<Happening>& story,
                         Observation seen, Findings& results)
    : script(story),
      machines(MachinesOf(machine, story)),
      observation(std::move(seen)),
      findings(results),
      count(machine.registry.reportDevicesCount.value_or(0)) {
    if (machine.registry.biosReportTime) {
        biosStamp = Time(std::chrono::seconds(*machine.registry.biosReportTime));
    }
}

void PolicyModel::Play() {
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < script.size(); ++i) {
        if (Is(script[i], "restart_plugin")) {
            ends.push_back(i);
        }
    }
    ends.push_back(script.size());
    if (observation.happenings.size() != script.size() || observation.runs.size() != ends.size()) {
        throw std::runtime_error("the host did not play the whole script");
    }
    PlayFirmwareEvents();
    std::size_t first = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        PlayRun(observation.runs[i], first, ends[i]);
        first = ends[i] + 1;
    }
    FlagRest();
}

void PolicyModel::PlayFirmwareEvents() {
    auto& reports = observation.firmwareReports;
    for (std::size_t i = 0; i < script.size(); ++i) {
        if (!Is(script[i], "fire_firmware_event")) {
            continue;
        }
        const Time time = observation.happenings[i];
        // The host fires and goes on to the next happening only when the plug-in has answered.
        const Time latest =
            i + 1 < script.size() ? observation.happenings[i + 1] : observation.runs.back().stopped;
        const Outcome expected = FirmwareReport(machines[i], script[i].at("code").get<unsigned>());
        Outcome happened;
        if (!expected.line.empty() && !reports.empty() &&
            reports.front().time - latest < kTolerance &&
            time - reports.front().time < kTolerance) {
            happened = reports.front().outcome;
            reports.pop_front();
        }
        findings.Compare(time, "firmware event", {expected}, happened);
    }
}

void PolicyModel::PlayRun(const PluginRun& run, std::size_t first, std::size_t last) {
    // Stop may come before a delayed thread has begun; then only Start's own reports are there.
    const bool timerBegan = !run.loopLines.empty();
    if (!timerBegan && run.stopped - run.start > kRareDelay) {
        throw std::runtime_error("the plug-in's timer was not started");
    }
    firstHappening = first;
    lastHappening = last;
    inventories = InventoriesOf(machines, script, first, last);
    lastList = run.start;
    monitorRuns = AllowsDeviceLists(machines[first].suite) && count < kMostLists;
    if (run.registersHourly != monitorRuns) {
        findings.Add(run.start, std::string("the device monitor must ") +
                                    (monitorRuns ? "be started" : "not be started"));
    }

    const Time begun = timerBegan ? run.loopLines.front() : run.stopped;
    FlagUnexpected(run.start);
    Bios({run.start, begun, begun});
    Optimisation({run.start, begun, begun});
    if (!timerBegan) {
        timeLost += run.stopped - run.start;
        return;
    }

    const hours tick(monitorRuns ? 1 : 12);
    CheckRhythm(run, tick, findings);
    timeLost += TimeLost(run, tick);
    for (std::size_t i = 1; i < run.loopLines.size(); ++i) {
        const Time latest = run.loopLines[i];
        Tick({run.loopLines[i - 1] + tick, latest, latest + tick},
             i * static_cast<std::size_t>(tick.count()));
    }
    PlayLastTickUnseen(run, tick);
}

void PolicyModel::PlayLastTickUnseen(const PluginRun& run, hours tick) {
    // A Stop that comes while the callbacks run, or just before a wait, leaves no line behind them.
    const Time earliest = run.loopLines.back() + tick;
    const Time latest = run.stopped + kTolerance;
    const auto within = [&](const auto& queue) {
        return !queue.empty() && queue.front().time >= earliest && queue.front().time <= latest;
    };
    if (within(observation.timerEvents) || within(observation.deviceReports)) {
        ++findings.tolerated;
        Tick({earliest, latest, latest},
             run.loopLines.size() * static_cast<std::size_t>(tick.count()));
    }
}

void PolicyModel::Tick(const Occasion& occasion, std::size_t hour) {
    FlagUnexpected(occasion.earliest);
    if (hour % kBiosHours == 0) {
        Bios(occasion);
    }
    if (hour % kOptimisationHours == 0) {
        Optimisation(occasion);
    }
    DeviceList(occasion);
}

void PolicyModel::Bios(const Occasion& occasion) {
    const auto event = TakeTimerEvent(kBiosEvent, occasion.latest);
    const Time time = event ? event->time : occasion.latest;
    std::vector<Outcome> possible;
    for (const bool due : biosStamp ? HasPassed(*biosStamp, occasion.earliest, time, kBiosSpacing)
                                    : std::vector<bool>{true}) {
        possible.push_back(due ? BiosReport(machines.front()) : Outcome());
    }
    Outcome happened;
    if (event) {
        happened.events = {event->event};
        biosStamp = event->time;
    }
    findings.Compare(time, "BIOS report", possible, happened);
}

void PolicyModel::Optimisation(const Occasion& occasion) {
    const auto event = TakeTimerEvent(kOptimisationEvent, occasion.latest);
    const Time time = event ? event->time : occasion.latest;
    std::vector<Outcome> possible;
    for (const std::size_t happenings : HappeningsBy(time)) {
        possible.push_back(OptimisationReport(machines[happenings]));
    }
    Outcome happened;
    if (event) {
        happened.events = {event->event};
    }
    findings.Compare(time, "optimisation report", possible, happened);
}

void PolicyModel::DeviceList(const Occasion& occasion) {
    auto& reports = observation.deviceReports;
    std::optional<TimedOutcome> seen;
    if (!reports.empty() && reports.front().time < occasion.next) {
        seen = reports.front();
        reports.pop_front();
    }
    const Time time = seen ? seen->time : occasion.latest;
    std::vector<Outcome> possible;
    for (const bool due : HasPassed(lastList, occasion.earliest, time, kListSpacing)) {
        for (const std::size_t happenings : HappeningsBy(time)) {
            const std::string& consent = machines[happenings].suite.consent;
            if (!due || !monitorRuns) {
                possible.emplace_back();
            } else if (consent != "1") {
                possible.push_back({"IsAgreeClause = " + consent + kRefusalEnd, {}});
            } else {
                possible.push_back(DeviceListReport(inventories[happenings - firstHappening],
                                                    machines[happenings]));
            }
        }
    }
    findings.Compare(time, "device list", possible, seen ? seen->outcome : Outcome());
    if (seen && seen->outcome.line == kListLine) {
        ++deviceLists;
        ++count;
        lastList = seen->lastEvent;
        monitorRuns = monitorRuns && count < kMostLists;
    } else if (seen) {
        ++refusals;
    }
}

std::vector<std::size_t> PolicyModel::HappeningsBy(Time time) const {
    const std::vector<Time>& times = observation.happenings;
    std::size_t likeliest = firstHappening;
    while (likeliest < lastHappening && times[likeliest] <= time) {
        ++likeliest;
    }
    std::vector<std::size_t> numbers{likeliest};
    for (std::size_t n = likeliest; n > firstHappening && time - times[n - 1] < kTolerance; --n) {
        numbers.push_back(n - 1);
    }
    for (std::size_t n = likeliest; n < lastHappening && times[n] - time < kTolerance; ++n) {
        numbers.push_back(n + 1);
    }
    return numbers;
}

std::optional<TimedEvent> PolicyModel::TakeTimerEvent(int id, Time latest) {
    auto& events = observation.timerEvents;
    if (events.empty() || events.front().event.id != id || events.front().time > latest) {
        return std::nullopt;
    }
    const TimedEvent event = events.front();
    events.pop_front();
    return event;
}

void PolicyModel::FlagUnexpected(Time before) {
    auto& events = observation.timerEvents;
    for (; !events.empty() && events.front().time < before; events.pop_front()) {
        findings.Add(events.front().time,
                     "not expected: event " + std::to_string(events.front().event.id));
    }
    auto& reports = observation.deviceReports;
    for (; !reports.empty() && reports.front().time < before; reports.pop_front()) {
        findings.Add(reports.front().time, "not expected: " + reports.front().outcome.line);
    }
}

void PolicyModel::FlagRest() {
    FlagUnexpected(Time::max());
    for (const TimedOutcome& report : observation.firmwareReports) {
        findings.Add(report.time, "not expected: " + report.outcome.line);
    }
    for (const TimedEvent& event : observation.strangers) {
        findings.Add(event.time, "belongs to nothing: event " + std::to_string(event.event.id));
    }
}

}  // namespace story
