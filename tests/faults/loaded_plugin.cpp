#include "faults/loaded_plugin.h"

#include <algorithm>
#include <chrono>

#include "faults/observations.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/threads.h"
#include "support/comes_true.h"

namespace faults_test {
namespace {

using test_support::ComesTrue;

constexpr UINT kMarkerMessage = WM_USER + 1;

auto CountMarkers(const simulation::World& world) {
    const auto calls = world.journal.Calls("DefWindowProcW");
    return std::count_if(calls.begin(), calls.end(), [](const simulation::JournalEntry& call) {
        return call.finished && call["message"] == std::to_string(kMarkerMessage);
    });
}

}  // namespace

LoadedPlugin::LoadedPlugin(SimulatedLoad::WorldUser beforeUnmapping)
    : load(
          scenario.scene.machine, [](simulation::World&) {},
          beforeUnmapping
              ? std::move(beforeUnmapping)
              : [this](simulation::World& world) { left = LeftResources(world.ledger).dump(); }) {}

bool LoadedPlugin::MonitorListens() {
    return ComesTrue([this] { return World().journal.Count("GetMessageW") > 0; });
}

bool LoadedPlugin::Release() {
    plugin.reset();
    return load.Release();
}

std::string MonitorState(simulation::World& world) {
    const auto hasEnded = [&] {
        return simulation::WaitForThreads(world, std::chrono::milliseconds(0));
    };
    const HWND window = simulation::FindMonitorWindow();
    const auto before = CountMarkers(world);
    // From this program, whose imports are its own.
    const bool posted = window != nullptr && PostMessageW(window, kMarkerMessage, 0, 0) != FALSE;
    if (!posted) {
        return ComesTrue(hasEnded) ? "has ended" : "hangs";
    }
    const bool answers = ComesTrue([&] { return CountMarkers(world) > before || hasEnded(); });
    return !answers ? "hangs" : hasEnded() ? "has ended" : "listens";
}

}  // namespace faults_test
