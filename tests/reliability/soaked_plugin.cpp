#include "reliability/soaked_plugin.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include "faults/observations.h"
#include "reliability/visitors.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/threads.h"
#include "standins/board_info/board_info_control.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/log_kit/log_kit_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace reliability_test {
namespace {

using test_support::kPatience;

constexpr char kCountValue[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";
constexpr char kSwitches[] = "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr char kPowerfulMode[] =
    "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost:PowerfulModeStatus";
constexpr unsigned kFirmwareCode = 675;

/// The clock of dates goes by the timer's hours alone. Not the machine's wall clock, which the
/// timer loop's waits would be reckoned by as well.
std::atomic<__time64_t> unixSeconds{0};

__time64_t __cdecl PassingTime64(__time64_t* seconds) {
    const __time64_t now = unixSeconds;
    if (seconds != nullptr) {
        *seconds = now;
    }
    return now;
}

/// A plug-in that hangs cannot be taken down any more: the program ends, without a record.
void Demand(bool condition, const char* complaint) {
    if (!condition) {
        std::fprintf(stderr, "the soak ends: %s\n", complaint);
        std::_Exit(1);
    }
}

}  // namespace

SoakedPlugin::SoakedPlugin() {
    LogKit_SetSink(&OnLine, this);
    XeEvent_SetSink(&OnEvent, this);
    XeEvent_SetWarningSink(
        [](void* context, const char*) { ++static_cast<SoakedPlugin*>(context)->surprises; }, this);
    life.LetMonitorGo();
    unixSeconds = 1'800'000'000;
    dates.emplace(life.Module());
    dates->Redirect<decltype(::_time64)>("_time64", &PassingTime64);
    hours.emplace(life.Module(), life.World());
}

void SoakedPlugin::OnLine(void* context, int /*level*/, const wchar_t* text) {
    SoakedPlugin& self = *static_cast<SoakedPlugin*>(context);
    const std::wstring_view line(text);
    const auto begins = [line](std::wstring_view start) { return line.rfind(start, 0) == 0; };
    const std::lock_guard<std::mutex> lock(self.mutex);
    self.loopTurns += begins(L"BigdataTimerReportFrame loop(") ? 1 : 0;
    self.sent.lists += begins(L"Peripheral list(") ? 1 : 0;
    self.sent.refusedForConsent += begins(L"IsAgreeClause = ") ? 1 : 0;
}

void SoakedPlugin::OnEvent(void* context, int id, const XeEventField* fields, std::size_t count) {
    SoakedPlugin& self = *static_cast<SoakedPlugin*>(context);
    const auto value = [&](std::size_t index) {
        return index < count ? std::string(fields[index].value, fields[index].valueLength) : "?";
    };
    const std::lock_guard<std::mutex> lock(self.mutex);
    switch (id) {
        case 992614500:
            ++self.sent.bios;
            break;
        case 992614512:
            ++self.sent.ecLogs;
            break;
        case 992614518:
            self.sent.optimisation += value(1) + " " + value(2);
            break;
        case 992614533:
            for (std::size_t i = 0; i < count; ++i) {
                self.lists += value(i);
            }
            break;
        default:
            ++self.surprises;
    }
}

Sent SoakedPlugin::Start() {
    Demand(life.Plugin().Start(), "Start fails");
    Demand(hours->LoopWaits(), "the timer loop does not get to its wait");
    Demand(life.MonitorListens(), "the monitor does not listen");
    AwaitMonitor(/*monitorEnds=*/false);
    return TakeSent();
}

Sent SoakedPlugin::Pass(const Hour& hour, bool monitorRuns, bool monitorEnds) {
    Happen(hour, monitorRuns);
    PlanFaults(hour);
    unixSeconds += 3600;
    Demand(hours->PassTick(), "the timer loop hangs");
    if (monitorRuns) {
        AwaitMonitor(monitorEnds);
    }
    life.World().faults.Clear();
    life.World().journal.Clear();
    life.suite.recorded.timeline.Clear();
    return TakeSent();
}

void SoakedPlugin::Happen(const Hour& hour, bool monitorRuns) {
    using simulation::Delivery;
    if (hour.departure) {
        simulation::UnplugDevice(life.World(), VisitorId(*hour.departure), kPatience);
    }
    if (hour.arrival) {
        life.World().Unplug(VisitorId(*hour.arrival));
        if (hour.arrivalIsUnreadable && monitorRuns) {
            life.World().faults.FailCall("SetupDiGetClassDevsW", 1, ERROR_GEN_FAILURE);
        }
        const Delivery delivery =
            simulation::PlugDevice(life.World(), Visitor(*hour.arrival), kPatience);
        Demand(delivery == (monitorRuns ? Delivery::Delivered : Delivery::NoWindow),
               "an arrival is not dealt with");
        life.World().faults.Clear();
    }
    const simulation::EcLogAnswer& log = life.scenario.scene.machine.suite.ecLog;
    WmiKit_SetAnswer(hour.firmwareRefuses ? -5 : 0, 0, log.dataSize, log.data.data(),
                     log.data.size());
    for (unsigned i = 0; i < hour.firmwareEvents; ++i) {
        Demand(WmiKit_FireFirmwareEvent(kFirmwareCode) == 1, "nobody takes firmware events");
    }
    if (hour.otherFirmwareEvent) {
        WmiKit_FireFirmwareEvent(kFirmwareCode + 1);
    }
    if (hour.consent) {
        ConsentStore_SetAnswer(hour.consent->c_str());
    }
    if (hour.boardIsReadable) {
        BoardInfo_SetAvailable(*hour.boardIsReadable ? 1 : 0);
    }
    if (hour.switchIsOn) {
        life.suite.recorded.registry.SetValue(kPowerfulMode, *hour.switchIsOn ? 1 : 0);
    }
    switchesExist = hour.switchesExist.value_or(switchesExist);
    // A value brings its key along.
    switchesExist ? life.suite.recorded.registry.AddKey(kSwitches)
                  : life.suite.recorded.registry.RemoveKey(kSwitches);
}

void SoakedPlugin::PlanFaults(const Hour& hour) {
    simulation::FaultPlan& faults = life.World().faults;
    if (hour.postFails) {
        faults.FailCall("PostMessageW", 1, ERROR_NOT_ENOUGH_QUOTA);
    }
    if (hour.spoolerFails) {
        faults.FailEveryCall("EnumPrintersW", ERROR_INVALID_FUNCTION);
    }
    if (hour.displaysFail) {
        faults.FailEveryCall("QueryDisplayConfig", ERROR_GEN_FAILURE);
    }
    if (hour.versionFails) {
        faults.FailEveryCall("GetFileVersionInfoSizeW", ERROR_FILE_NOT_FOUND);
    }
}

void SoakedPlugin::AwaitMonitor(bool monitorEnds) {
    Demand(monitorEnds ? simulation::WaitForThreads(life.World(), kPatience)
                       : faults_test::MonitorState(life.World()) == "listens",
           "the monitor hangs");
}

Sent SoakedPlugin::TakeSent() {
    const std::lock_guard<std::mutex> lock(mutex);
    for (unsigned visitor = 0; visitor < kVisitors; ++visitor) {
        if (lists.find(VisitorText(visitor)) != std::string::npos) {
            sent.listed.insert(visitor);
        }
    }
    // A list without a line, or a line without a list.
    if (lists.empty() != (sent.lists == 0)) {
        ++surprises;
    }
    Sent taken = std::move(sent);
    sent = {};
    lists.clear();
    return taken;
}

std::optional<std::int64_t> SoakedPlugin::StoredListCount() const {
    return life.suite.recorded.registry.Value(kCountValue);
}

std::string SoakedPlugin::End() {
    life.Plugin().Stop();
    simulation::WaitForThreads(life.World(), kPatience);
    hours.reset();
    dates.reset();
    std::string complaint = life.Release() ? "" : "the library stays mapped; ";
    complaint += life.Complaint();
    complaint += surprises == 0 ? "" : std::to_string(surprises) + " odd events or warnings; ";
    return complaint;
}

}  // namespace reliability_test
