#include "faults/scenario.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

#include "faults/kept_resources.h"
#include "faults/loaded_plugin.h"
#include "faults/more_fakes.h"
#include "faults/observations.h"
#include "faults/simulated_load.h"
#include "faults/suite_calls.h"
#include "library/device_monitor/passing_hours.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/threads.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"
#include "support/plugin_module.h"

namespace faults_test {
namespace {

using device_monitor_test::PassingHours;
using simulation::FaultVariant;
using simulation::World;
using test_support::ComesTrue;
using test_support::kPatience;

std::optional<FaultVariant> VariantOf(const std::string& way) {
    for (const FaultVariant variant : {FaultVariant::Fail, FaultVariant::NullResult,
                                       FaultVariant::ShortSize, FaultVariant::SuccessWithNothing}) {
        if (way == VariantName(variant)) {
            return variant;
        }
    }
    return std::nullopt;
}

class Player {
public:
    Player(const Scene& theScene, const std::vector<PlannedFault>& faults)
        : scene(theScene), suite(theScene.machine, faults) {}

    Played Play() {
        PlanRefusal();
        if (scene.managerIsLoaded) {
            manager.emplace();
        }
        load = std::make_unique<SimulatedLoad>(
            scene.machine, [this](World& world) { PlanFaults(world); },
            [this](World& world) { Observe(world); });
        steps["load"] = load->Module() == nullptr ? "refused" : "loaded";
        if (load->Module() != nullptr) {
            Live();
        }
        return Result();
    }

private:
    void PlanRefusal();

    void PlanFaults(World& world) {
        for (const PlannedFault& fault : suite.OtherFaults()) {
            if (fault.call != "malloc") {
                world.faults.FailCall(fault.call, fault.nth, fault.number,
                                      VariantOf(fault.way).value());
            }
        }
    }

    void Live() {
        // A reference more, so that one that the plug-in takes from the host shows.
        LoadLibraryW(L"TallyportPlugin.dll");
        std::shared_ptr<ZedPlugin> plugin =
            manager && manager->Count() == 1 ? manager->At(0)->factory() : nullptr;
        if (plugin != nullptr) {
            const HeldMonitorThread held;
            PassingHours hours(load->Module(), load->World());
            Work(*plugin, hours);
            plugin.reset();
        }
        steps["mapped"] = Unload();
    }

    void Work(ZedPlugin& plugin, PassingHours& hours);
    void PlugDevice();
    void RaiseFirmwareEvent();
    bool MonitorHasEnded() {
        return simulation::WaitForThreads(load->World(), std::chrono::milliseconds(0));
    }

    const char* Unload() {
        if (load->Release()) {
            return "not until the host lets go";
        }
        // The plug-in's own threads are over or will never be.
        return load->Release() ? "until the host lets go" : "for good";
    }

    void Observe(World& world) {
        observed.lines = LinesByThread(suite.recorded.log.Lines(), ThreadNames());
        observed.left = LeftResources(world.ledger);
        observed.calls = CallsOf(world.journal.Entries(), ThreadNames());
        observed.keptBlocks = KeptBlocks();
        observed.faultsWereMet = world.faults.Missed().empty();
    }

    ThreadNamesById ThreadNames() const {
        return {{HeldMonitorThread::ThreadId(), "monitor"},
                {firmwareThreadId, "firmware"},
                {hostThreadId, "host"}};
    }

    Played Result();
    const Scene& scene;
    SuiteOfScenario suite;
    bool refuses = false;
    std::optional<simulation::MallocFailure> refusal;
    unsigned refused = 0;  ///< By a refusal that is over.
    std::optional<test_support::PluginsManager> manager;
    std::unique_ptr<SimulatedLoad> load;
    const DWORD hostThreadId = GetCurrentThreadId();
    DWORD firmwareThreadId = 0;
    Json steps;
    Observed observed;
};

void Player::PlanRefusal() {
    for (const PlannedFault& fault : suite.OtherFaults()) {
        if (fault.call != "malloc") {
            continue;
        }
        refuses = true;
        refusal.emplace(fault.number);
        if (fault.way == "RefuseAtStart") {
            suite.recorded.log.onLine = [this](const test_support::LogLine& line) {
                if (line.text.rfind(L"Register timer:1(", 0) == 0) {
                    refused = refusal->Count();
                    refusal.reset();
                }
            };
        }
    }
}

void Player::PlugDevice() {
    // The system tells those only who asked for it.
    if (load->World().ledger.CountOpen(simulation::ResourceKind::Notification) == 0) {
        load->World().Plug(scene.arriving);
        steps["arrival"] = "nobody asked";
        return;
    }
    const simulation::Delivery delivery =
        simulation::PlugDevice(load->World(), scene.arriving, kPatience);
    steps["arrival"] = delivery == simulation::Delivery::Delivered ? "told" : "lost";
}

void Player::RaiseFirmwareEvent() {
    std::thread([this] {
        firmwareThreadId = GetCurrentThreadId();
        steps["firmwareEvent"] = WmiKit_FireFirmwareEvent(675) == 0 ? "nobody asked" : "told";
    }).join();
}

void Player::Work(ZedPlugin& plugin, PassingHours& hours) {
    steps["start"] = plugin.Start() ? "true" : "false";
    steps["loop"] = hours.LoopWaits() ? "waits" : "hangs";
    const bool monitored = load->World().ledger.CountAcquired(simulation::ResourceKind::Thread) > 0;
    steps["monitor"] = "absent";
    if (monitored) {
        HeldMonitorThread::LetGo();
        ComesTrue(
            [this] { return load->World().journal.Count("GetMessageW") > 0 || MonitorHasEnded(); });
        steps["monitor"] = MonitorState(load->World());
    }
    PlugDevice();
    // A day has passed and the next hour, at which the list is due, with it.
    load->World().clock.Advance(std::chrono::hours(24));
    steps["tick"] = hours.PassTick() ? "done" : "hangs";
    steps["monitorAfterTick"] = monitored ? MonitorState(load->World()) : "absent";
    RaiseFirmwareEvent();
    steps["stop"] = plugin.Stop() ? "true" : "false";
    steps["monitorAfterStop"] = monitored ? MonitorState(load->World()) : "absent";
    if (steps["monitorAfterStop"] == "listens") {
        PostMessageW(simulation::FindMonitorWindow(), WM_CLOSE, 0, 0);
        ComesTrue([this] { return MonitorHasEnded(); });
    }
}

Played Player::Result() {
    if (load->IsMapped()) {
        Observe(load->World());
    }
    load.reset();
    // What stays because a call failed must not meet the next scenario.
    manager.reset();
    while (const HMODULE left = GetModuleHandleW(L"ZedPluginsManager.dll")) {
        FreeLibrary(left);
    }
    UnregisterClassW(L"DeviceMonitorWnd", GetModuleHandleW(nullptr));

    Played played;
    played.calls = std::move(observed.calls);
    for (Call& call : suite.Calls()) {
        played.calls.push_back(std::move(call));
    }
    played.faultsWereMet =
        observed.faultsWereMet && (!refuses || (refusal ? refusal->Count() : refused) > 0);
    played.outcome = {{"steps", steps},
                      {"lines", observed.lines},
                      {"events", EventsById(suite.recorded.events.All())},
                      {"warnings", suite.recorded.events.Warnings()},
                      {"registry", suite.RegistryState()},
                      {"left", observed.left},
                      {"heap", HeapValidate(GetProcessHeap(), 0, nullptr) ? "sound" : "damaged"},
                      {"keptBlocks", observed.keptBlocks}};
    return played;
}

}  // namespace

Played PlayScenario(const Scene& scene, const std::vector<PlannedFault>& faults) {
    return Player(scene, faults).Play();
}

}  // namespace faults_test
