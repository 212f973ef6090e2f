#include "reliability/soaked_plugin.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include "faults/observations.h"
#include "reliability/soak_visitors.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/threads.h"
#include "standins/board_info/board_info_control.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/log_kit/log_kit_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace reliability_test {
namespace {

constexpr UINT kMarkerMessage = WM_USER + 1;
constexpr char kCountValue[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";
constexpr char kSwitches[] = "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr char kPowerfulMode[] =
    "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost:PowerfulModeStatus";
constexpr auto kPatience = std::chrono::seconds(20);
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

SoakedPlugin::SoakedPlugin()
    : scenario(faults_test::LoadScenario("whole_life")),
      machine(scenario.scene.machine),
      suite(machine, std::nullopt) {
    LogKit_SetSink(&OnLine, this);
    XeEvent_SetSink(&OnEvent, this);
    XeEvent_SetWarningSink(
        [](void* context, const char*) { ++static_cast<SoakedPlugin*>(context)->surprises; }, this);
    load.emplace(
        machine, [](simulation::World&) {},
        [this](simulation::World& world) {
            left = faults_test::LeftResources(world.ledger).dump();
        });
    gate.LetGo();
    unixSeconds = 1'800'000'000;
    dates.emplace(load->Module());
    dates->Redirect<decltype(::_time64)>("_time64", &PassingTime64);
    hours.emplace(load->Module(), load->World());
    plugin = manager->At(0)->factory();
}

SoakedPlugin::~SoakedPlugin() {
    LogKit_SetSink(nullptr, nullptr);
    XeEvent_SetSink(nullptr, nullptr);
    XeEvent_SetWarningSink(nullptr, nullptr);
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
    Demand(plugin->Start(), "Start fails");
    Demand(hours->LoopWaits(), "the timer loop does not get to its wait");
    const auto listens = [this] { return load->World().journal.Count("GetMessageW") > 0; };
    Demand(test_support::ComesTrue(listens, kPatience), "the monitor does not listen");
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
    load->World().faults.Clear();
    load->World().journal.Clear();
    suite.recorded.timeline.Clear();
    return TakeSent();
}

void SoakedPlugin::Happen(const Hour& hour, bool monitorRuns) {
    using simulation::Delivery;
    if (hour.departure) {
        simulation::UnplugDevice(load->World(), VisitorId(*hour.departure), kPatience);
    }
    if (hour.arrival) {
        load->World().Unplug(VisitorId(*hour.arrival));
        if (hour.arrivalIsUnreadable && monitorRuns) {
            load->World().faults.FailCall("SetupDiGetClassDevsW", 1, ERROR_GEN_FAILURE);
        }
        const Delivery delivery =
            simulation::PlugDevice(load->World(), Visitor(*hour.arrival), kPatience);
        Demand(delivery == (monitorRuns ? Delivery::Delivered : Delivery::NoWindow),
               "an arrival is not dealt with");
        load->World().faults.Clear();
    }
    const simulation::EcLogAnswer& log = machine.suite.ecLog;
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
        suite.recorded.registry.SetValue(kPowerfulMode, *hour.switchIsOn ? 1 : 0);
    }
    switchesExist = hour.switchesExist.value_or(switchesExist);
    // A value brings its key along.
    switchesExist ? suite.recorded.registry.AddKey(kSwitches)
                  : suite.recorded.registry.RemoveKey(kSwitches);
}

void SoakedPlugin::PlanFaults(const Hour& hour) {
    simulation::FaultPlan& faults = load->World().faults;
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
    simulation::World& world = load->World();
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    const auto handled = [&] {
        const auto calls = world.journal.Calls("DefWindowProcW");
        return std::any_of(calls.begin(), calls.end(), [](const simulation::JournalEntry& call) {
            return call.finished && call["message"] == std::to_string(kMarkerMessage);
        });
    };
    const auto done = [&] {
        return monitorEnds ? simulation::WaitForThreads(world, std::chrono::milliseconds(0))
                           : handled();
    };
    // From this program, whose imports are its own.
    PostMessageW(simulation::FindMonitorWindow(), kMarkerMessage, 0, 0);
    while (!done()) {
        Demand(std::chrono::steady_clock::now() < deadline, "the monitor hangs");
        Sleep(0);
    }
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
    return suite.recorded.registry.Value(kCountValue);
}

std::string SoakedPlugin::End() {
    plugin->Stop();
    simulation::WaitForThreads(load->World(), kPatience);
    plugin.reset();
    hours.reset();
    dates.reset();
    load->Release();
    std::string complaint = load->IsMapped() ? "the library stays mapped; " : "";
    load.reset();
    complaint += left == "[]" ? "" : "left: " + left + "; ";
    complaint += surprises == 0 ? "" : std::to_string(surprises) + " odd events or warnings; ";
    return complaint;
}

}  // namespace reliability_test
