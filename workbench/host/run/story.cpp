#include "host/run/story.h"

#include <algorithm>

#include "host/run/patience.h"
#include "simulation/device_happenings.h"

namespace host {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

namespace {

bool HasMonitorWindow() { return simulation::FindMonitorWindow() != nullptr; }

}  // namespace

std::optional<seconds> Story::StatusInterval(seconds duration) {
    if (duration <= minutes(1)) {
        return std::nullopt;
    }
    if (duration <= hours(1)) {
        return minutes(1);
    }
    return duration <= hours(24) ? hours(1) : hours(24);
}

Story::~Story() {
    if (session) {
        LetTimerSettle();
    }
}

void Story::Play(seconds duration, const std::vector<Happening>& script) {
    StartPlugin();
    ShowStatus();
    const std::optional<seconds> interval = StatusInterval(duration);
    seconds nextStatus = interval.value_or(duration);
    auto happening = script.begin();
    Course course = Course::GoesOn;
    while (course == Course::GoesOn) {
        const seconds nextHappening = happening == script.end() ? duration : happening->at;
        if (std::min(nextStatus, nextHappening) >= duration) {
            WaitUntil(duration);
            break;
        }
        if (nextHappening <= nextStatus) {
            course = WaitUntil(nextHappening);
            course = course == Course::GoesOn ? Perform(*happening++) : course;
        } else {
            course = WaitUntil(nextStatus);
            ShowStatus();
            nextStatus += *interval;
        }
    }
    StopPlugin();
}

void Story::StartPlugin() {
    session = std::make_unique<PluginSession>(stage.suite, stage.pluginPath, stage.surroundings,
                                              stage.screen);
    session->Start(stage.clock);
    if (stage.observer.HasHourlyReport()) {
        // A Stop that finds no monitor window leaves the monitor running for good.
        monitorRuns = WaitPatiently(&HasMonitorWindow);
    } else if (stage.surroundings.DeviceListsSent() >= kMostDeviceLists) {
        // The plug-in gives every other reason itself.
        stage.screen.Line(LineKind::Note, "It started no device monitor: " + ListsSent());
    }
}

std::string Story::ListsSent() const {
    return std::to_string(stage.surroundings.DeviceListsSent()) + " of " +
           std::to_string(kMostDeviceLists) + " device lists sent";
}

void Story::WatchMonitor() {
    if (monitorRuns && !HasMonitorWindow()) {
        monitorRuns = false;
        stage.screen.Line(LineKind::Note, "The device monitor ended: " + ListsSent());
    }
}

void Story::LetTimerSettle() {
    // A Stop that finds the timer's thread right before a wait takes effect after that wait only.
    constexpr std::chrono::milliseconds kTimeToReachTheWait(300);
    WaitPatiently([&] { return stage.observer.SinceTimerLine() >= kTimeToReachTheWait; });
}

void Story::StopPlugin() {
    LetTimerSettle();
    WatchMonitor();
    monitorRuns = false;
    session->Stop();
    stage.observer.OnStopped();
    session->Unload();
    session.reset();
}

Story::Course Story::WaitUntil(seconds time) {
    constexpr std::chrono::milliseconds kBetweenLooks = minutes(10);
    // A wait of the system's may end a little early.
    for (;;) {
        const auto left = stage.clock.Until(time);
        if (stopSignal.WaitFor(monitorRuns ? std::min(left, kBetweenLooks) : left)) {
            stage.screen.Line(LineKind::Note, "Ctrl-C: the run ends early");
            return Course::Ends;
        }
        WatchMonitor();
        if (left.count() == 0) {
            return Course::GoesOn;
        }
    }
}

Story::Course Story::Perform(const Happening& happening) {
    stage.screen.Line(LineKind::Script, happening.text + " (" + happening.place + ")");
    const Action& action = happening.action;
    if (const auto* const event = std::get_if<FireFirmwareEvent>(&action)) {
        if (stage.suite.fireFirmwareEvent(event->code) == 0) {
            stage.screen.Line(LineKind::Note, "Nobody is subscribed to firmware events");
        }
    } else if (const auto* const change = std::get_if<SetSwitch>(&action)) {
        stage.surroundings.Perform(*change);
    } else if (const auto* const consent = std::get_if<SetConsent>(&action)) {
        stage.suite.setConsent(consent->answer.c_str());
    } else if (const auto* const feature = std::get_if<SetFeature>(&action)) {
        stage.suite.setFeature(feature->name.c_str(), feature->value);
    } else if (const auto* const plug = std::get_if<PlugDevice>(&action)) {
        stage.surroundings.Perform(*plug);
    } else if (std::holds_alternative<RestartPlugin>(action)) {
        StopPlugin();
        StartPlugin();
    }
    return std::holds_alternative<StopRun>(action) ? Course::Ends : Course::GoesOn;
}

void Story::ShowStatus() {
    stage.screen.Line(LineKind::Wait,
                      stage.observer.Status() + (monitorRuns ? "; " + ListsSent() : ""));
}

}  // namespace host
