#include "host/run/simulated_surroundings.h"

#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "common/text.h"
#include "common/text_table.h"
#include "host/host_error.h"
#include "host/run/patience.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/threads.h"

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

std::string KeptValue(const wchar_t* name) {
    return "HKLM\\" + workbench::ToUtf8(kKeptStateKey) + ":" + workbench::ToUtf8(name);
}

std::string SwitchValue(const std::wstring& sid, const std::wstring& name) {
    return "HKU\\" + workbench::ToUtf8(sid + kSwitchKeySuffix + L":" + name);
}

/// Empty when everything came back.
std::string OneLine(const simulation::ResourceLedger& ledger) {
    std::ostringstream lines;
    lines << ledger;
    std::string text = lines.str();
    text.erase(text.find_last_not_of('\n') + 1);
    return workbench::Replaced(std::move(text), "\n", "; ");
}

/// The shelf stand-in knows one property, and the plug-in asks for this one only.
void SetShelf(const Suite& suite,
              const std::optional<std::multimap<std::string, std::string>>& shelf) {
    const std::pair<const std::string, std::string> region{"VRLoginGuide", "china"};
    const bool supported = shelf && std::find(shelf->begin(), shelf->end(), region) != shelf->end();
    suite.setShelf(shelf ? 1 : 0, supported ? 1 : 0);
}

/// Lets the suite's libraries answer as the machine says.
void SetSuiteAnswers(const Suite& suite, const simulation::Machine& machine) {
    suite.setFirmwareAvailable(machine.firmware ? 1 : 0);
    if (machine.firmware) {
        suite.setFirmwareTexts(machine.firmware->boardProduct.c_str(),
                               machine.firmware->oemProduct.c_str(),
                               machine.firmware->biosVersion.c_str());
    }
    const simulation::EcLogAnswer& ecLog = machine.suite.ecLog;
    suite.setFirmwareAnswer(ecLog.callResult, ecLog.status, ecLog.dataSize, ecLog.data.data(),
                            ecLog.data.size());
    suite.setFirmwareStartResult(machine.suite.firmwareStartResult);
    suite.setConsent(machine.suite.consent.c_str());
    suite.clearFeatures();
    for (const auto& [name, value] : machine.suite.features) {
        suite.setFeature(name.c_str(), value);
    }
    SetShelf(suite, machine.suite.shelf);
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
        throw BadInput(happening.place + ": nobody is logged on at the console of '" + path +
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
        throw BadInput(happening.place + ": '" + path + "' describes no device \"" +
                       workbench::ToUtf8(plug->instanceId) +
                       "\"; describe it there, with \"present\": false if it comes later");
    }
    if (device->interfaces.empty()) {
        throw BadInput(happening.place + ": \"" + workbench::ToUtf8(plug->instanceId) +
                       "\" has no device interface, so nobody would hear of it; describe one "
                       "in '" +
                       path + "'");
    }
}

void SimulatedSurroundings::Prepare() {
    SetSuiteAnswers(suite, machine);
    const simulation::RegistryPreset& preset = machine.registry;
    const auto set = [&](const std::string& value, std::optional<std::int64_t> number) {
        if (number) {
            registry.SetValue(value, number);
        }
    };
    set(KeptValue(kBiosReportTime), preset.biosReportTime);
    set(KeptValue(kReportDevicesCount), preset.reportDevicesCount);
    if (!consoleUserSid.empty()) {
        set(SwitchValue(consoleUserSid, kPopUpBlockingStatus), preset.popUpBlocking);
        set(SwitchValue(consoleUserSid, kPowerfulModeStatus), preset.powerfulMode);
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
        throw RunFailed(
            "a thread of the plug-in is still running after Stop, which has to see to "
            "its end");
    }
    simulated->world().Change([&](simulation::Machine& left) { machine = std::move(left); });
    const std::string unbalanced = OneLine(simulated->world().ledger);
    simulated.reset();
    if (!unbalanced.empty()) {
        throw RunFailed("the plug-in did not give back what the system handed out: " + unbalanced +
                        "; it has to, on every way out");
    }
}

int SimulatedSurroundings::DeviceListsSent() const {
    return static_cast<int>(registry.Value(KeptValue(kReportDevicesCount)).value_or(0));
}

void SimulatedSurroundings::Perform(const SetSwitch& action) {
    registry.SetValue(SwitchValue(consoleUserSid, action.name), action.value);
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
    // On a fast clock any other span is over too soon.
    constexpr std::chrono::milliseconds kForEver(INFINITE);
    simulation::Announce(action.plugIn ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE, changed,
                         kForEver);
}

}  // namespace host
