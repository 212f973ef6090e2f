#include "host/simulated_surroundings.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "host/host_error.h"
#include "host/kept_state.h"
#include "host/monitor_window.h"
#include "host/patience.h"
#include "host/suite_answers.h"
#include "simulation/fakes/threads.h"
#include "standins/common/text.h"

namespace host {
namespace {

std::wstring ConsoleUserSid(const simulation::Logons& logons) {
    const auto session = std::find_if(
        logons.sessions.begin(), logons.sessions.end(),
        [&](const simulation::Session& one) { return one.id == logons.consoleSession; });
    if (session == logons.sessions.end()) {
        return {};
    }
    const auto account = logons.accounts.find(session->userName);
    return account == logons.accounts.end() ? std::wstring() : account->second;
}

/// Empty when everything came back.
std::string OneLine(const simulation::ResourceLedger& ledger) {
    std::ostringstream lines;
    lines << ledger;
    std::string text = lines.str();
    for (std::size_t end = 0; (end = text.find('\n', end)) != std::string::npos;) {
        text.replace(end, 1, end + 1 == text.size() ? "" : "; ");
    }
    return text;
}

}  // namespace

SimulatedSurroundings::SimulatedSurroundings(simulation::Machine described, std::string file,
                                             const Suite& theSuite)
    : machine(std::move(described)),
      path(std::move(file)),
      suite(theSuite),
      registry(theSuite),
      consoleUserSid(ConsoleUserSid(machine.logons)) {}

std::string SimulatedSurroundings::Describe() const {
    return machine.description.empty() ? path : path + ": " + machine.description;
}

void SimulatedSurroundings::Check(const Happening& happening) const {
    if (std::holds_alternative<SetSwitch>(happening.action) && consoleUserSid.empty()) {
        throw HostError(ExitCode::BadInput,
                        happening.place + ": nobody is logged on at the console of '" + path +
                            "', so there are no switches; describe a console session there");
    }
    const auto* const plug = std::get_if<PlugDevice>(&happening.action);
    if (plug == nullptr) {
        return;
    }
    const auto device = std::find_if(
        machine.devices.begin(), machine.devices.end(),
        [&](const simulation::Device& one) { return one.instanceId == plug->instanceId; });
    if (device == machine.devices.end()) {
        throw HostError(ExitCode::BadInput,
                        happening.place + ": '" + path + "' describes no device \"" +
                            standins::ToUtf8(plug->instanceId) +
                            "\"; describe it there, with \"present\": false if it comes later");
    }
    if (device->interfaces.empty()) {
        throw HostError(ExitCode::BadInput,
                        happening.place + ": \"" + standins::ToUtf8(plug->instanceId) +
                            "\" has no device interface, so nobody would hear of it; describe one "
                            "in '" +
                            path + "'");
    }
}

void SimulatedSurroundings::Prepare() {
    SetSuiteAnswers(suite, machine);
    PrepareRegistry();
    // A clock that the file sets stands still until somebody moves it on.
    machine.clocks = {};
}

void SimulatedSurroundings::PrepareRegistry() {
    const simulation::RegistryPreset& preset = machine.registry;
    const auto set = [&](HKEY root, const std::wstring& key, const wchar_t* name, auto number) {
        if (number) {
            registry.Set(root, key, name, *number);
        }
    };
    set(HKEY_LOCAL_MACHINE, kKeptStateKey, kBiosReportTime, preset.biosReportTime);
    set(HKEY_LOCAL_MACHINE, kKeptStateKey, kReportDevicesCount, preset.reportDevicesCount);
    if (!consoleUserSid.empty()) {
        const std::wstring key = consoleUserSid + kSwitchKeySuffix;
        set(HKEY_USERS, key, kPopUpBlockingStatus, preset.popUpBlocking);
        set(HKEY_USERS, key, kPowerfulModeStatus, preset.powerfulMode);
    }
}

void SimulatedSurroundings::Enter(HMODULE plugin) { simulated.emplace(plugin, std::move(machine)); }

void SimulatedSurroundings::Leave() {
    if (!simulated) {
        return;
    }
    // The plug-in's monitor thread closes on its own time, and until then asks the simulation.
    const auto threadsEnded = [&] {
        return simulation::WaitForThreads(simulated->world(), std::chrono::milliseconds(0));
    };
    if (!WaitPatiently(threadsEnded)) {
        throw HostError(ExitCode::RunFailed,
                        "a thread of the plug-in is still running after Stop, which has to see to "
                        "its end");
    }
    simulated->world().Change([&](simulation::Machine& left) { machine = std::move(left); });
    const std::string unbalanced = OneLine(simulated->world().ledger);
    simulated.reset();
    if (!unbalanced.empty()) {
        throw HostError(ExitCode::RunFailed,
                        "the plug-in did not give back what the system handed out: " + unbalanced +
                            "; it has to, on every way out");
    }
}

int SimulatedSurroundings::DeviceListsSent() const {
    return static_cast<int>(
        registry.Get(HKEY_LOCAL_MACHINE, kKeptStateKey, kReportDevicesCount).value_or(0));
}

void SimulatedSurroundings::Perform(const SetSwitch& action) {
    registry.Set(HKEY_USERS, consoleUserSid + kSwitchKeySuffix, action.name, action.value);
}

void SimulatedSurroundings::Perform(const PlugDevice& action) {
    simulation::Device changed;
    simulated->world().Change([&](simulation::Machine& now) {
        for (simulation::Device& device : now.devices) {
            if (device.instanceId == action.instanceId) {
                device.present = action.plugIn;
                changed = device;
            }
        }
    });
    AnnounceDevice(changed, action.plugIn);
}

}  // namespace host
