#include "faults/suite_calls.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>

#include "simulation/call_text.h"
#include "standins/board_info/board_info_control.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"

namespace faults_test {
namespace {

constexpr char kStamp[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime";
constexpr char kCount[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";
constexpr char kSwitches[] = "\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr char kFeature[] = "ReportDeviceList";

/// Whoever is logged on at the machine, also where nobody is at its console.
std::string UserKey(const simulation::Logons& logons) {
    for (const simulation::Session& session : logons.sessions) {
        if (!session.userName.empty()) {
            return "HKU\\" + simulation::ToUtf8(logons.accounts.at(session.userName)) + kSwitches;
        }
    }
    return {};
}

void SetTexts(const simulation::Machine& machine, const std::set<std::string>& empty) {
    const auto text = [&](const char* operation, const std::wstring& value) {
        return empty.count(operation) != 0 ? L"" : value.c_str();
    };
    const simulation::Firmware& firmware = machine.firmware.value();
    BoardInfo_SetTexts(text("SmBiosHelper::GetBoardProductName", firmware.boardProduct),
                       text("SmBiosHelper::GetOemProductName", firmware.oemProduct),
                       text("SmBiosHelper::GetBIOSSysVersion", firmware.biosVersion));
}

void NoteEditionCall(void* context, const char* operation, const char* /*name*/,
                     const char* /*value*/) {
    static_cast<test_support::Timeline*>(context)->Note(operation);
}

/// What a call's note begins with. Notes of log lines and events are none of the plug-in's calls
/// that could fail.
bool IsCall(const std::string& note) {
    constexpr std::array kPrefixes{
        "SmBiosHelper::",  "BiosWmi::",     "BiosEventMonitor::StartEventMonitor",
        "exists ",         "read ",         "write ",
        "FeatureSwitch::", "ZedSoftShelf::"};
    return std::any_of(kPrefixes.begin(), kPrefixes.end(),
                       [&](const char* prefix) { return note.rfind(prefix, 0) == 0; });
}

}  // namespace

SuiteOfScenario::SuiteOfScenario(const simulation::Machine& machine,
                                 const std::vector<PlannedFault>& faults) {
    SetTexts(machine, emptyTexts);
    const simulation::EcLogAnswer& ecLog = machine.suite.ecLog;
    WmiKit_SetAnswer(ecLog.callResult, ecLog.status, ecLog.dataSize, ecLog.data.data(),
                     ecLog.data.size());
    ConsentStore_SetAnswer(machine.suite.consent.c_str());
    EditionAdapt_SetFeature(kFeature, machine.suite.features.at(kFeature));
    EditionAdapt_SetObserver(&NoteEditionCall, &recorded.timeline);
    PrepareRegistry(machine);
    for (const PlannedFault& fault : faults) {
        if (!Apply(fault, machine) && !ApplyToFirmware(fault, machine)) {
            others.push_back(fault);
        }
    }
}

SuiteOfScenario::~SuiteOfScenario() { ConsentStore_Reset(); }

void SuiteOfScenario::PrepareRegistry(const simulation::Machine& machine) {
    const simulation::RegistryPreset& preset = machine.registry;
    recorded.registry.SetValue(kStamp, preset.biosReportTime.value());
    recorded.registry.SetValue(kCount, preset.reportDevicesCount.value());
    const std::string key = UserKey(machine.logons);
    recorded.registry.SetValue(key + ":PopUpBlockingStatus", preset.popUpBlocking.value());
    recorded.registry.SetValue(key + ":PowerfulModeStatus", preset.powerfulMode.value());
}

bool SuiteOfScenario::Apply(const PlannedFault& fault, const simulation::Machine& machine) {
    const std::size_t blank = fault.call.find(' ');
    const std::string kind = fault.call.substr(0, blank);
    if (kind == "exists") {
        recorded.registry.RemoveKey(fault.call.substr(blank + 1));
    } else if (kind == "read") {
        recorded.registry.FailReads(fault.call.substr(fault.call.rfind(' ') + 1), fault.number);
    } else if (kind == "write") {
        recorded.registry.FailWrites(fault.call.substr(fault.call.rfind(' ') + 1), fault.number);
    } else if (fault.call == "SmBiosHelper::GetInstance") {
        BoardInfo_SetAvailable(0);
    } else if (fault.call.rfind("SmBiosHelper::", 0) == 0) {
        emptyTexts.insert(fault.call);
        SetTexts(machine, emptyTexts);
    } else if (fault.call == "AgreementSign::IsAgreeClause") {
        const char* const answers[] = {"", fault.way == "EmptyOnce" ? "1" : ""};
        ConsentStore_SetAnswers(answers, 2);
    } else {
        return false;
    }
    return true;
}

bool SuiteOfScenario::ApplyToFirmware(const PlannedFault& fault,
                                      const simulation::Machine& machine) {
    const int number = static_cast<int>(fault.number);
    const simulation::EcLogAnswer& ecLog = machine.suite.ecLog;
    if (fault.call == "BiosEventMonitor::StartEventMonitor") {
        WmiKit_SetStartResult(number);
    } else if (fault.call == "BiosWmi::GetBiosInfo" && fault.way == "Fail") {
        WmiKit_SetAnswer(number, 0, 0, nullptr, 0);
    } else if (fault.call == "BiosWmi::GetBiosInfo" && fault.way == "Status") {
        WmiKit_SetAnswer(0, static_cast<unsigned char>(number), ecLog.dataSize, ecLog.data.data(),
                         ecLog.data.size());
    } else if (fault.call == "BiosWmi::GetBiosInfo" && fault.way == "Nothing") {
        WmiKit_SetAnswer(0, 0, 0, nullptr, 0);
    } else if (fault.call == "FeatureSwitch::QueryFeature" && fault.way == "Unknown") {
        EditionAdapt_ClearFeatures();
    } else if (fault.call == "FeatureSwitch::QueryFeature" && fault.way == "Fail") {
        EditionAdapt_SetQueryResult(number);
    } else if (fault.call == "FeatureSwitch::QueryFeature") {
        EditionAdapt_SetFeature(kFeature, number);
    } else if (fault.call == "ZedSoftShelf::GetInstance") {
        EditionAdapt_SetShelf(/*present=*/0, /*supported=*/0);
    } else if (fault.call == "ZedSoftShelf::IsSupportProperty") {
        EditionAdapt_SetShelf(/*present=*/1, /*supported=*/0);
    } else {
        return false;
    }
    return true;
}

std::vector<Call> SuiteOfScenario::Calls() const {
    std::vector<Call> calls;
    std::map<std::string, unsigned> counts;
    for (const std::string& note : recorded.timeline.Texts()) {
        if (IsCall(note)) {
            // Access masks and written values are not part of the name.
            const std::string function = note.substr(0, note.find(" mask "));
            calls.push_back({function, ++counts[function], {}});
        }
    }
    for (unsigned i = 1; i <= ConsentStore_AskCount(); ++i) {
        calls.push_back({"AgreementSign::IsAgreeClause", i, {}});
    }
    return calls;
}

Json SuiteOfScenario::RegistryState() const {
    const std::int64_t stamp = recorded.registry.Value(kStamp).value_or(0);
    const bool isNow = std::abs(stamp - std::time(nullptr)) < 3600;
    return {{"BiosReportTime", isNow ? Json("now") : Json(stamp)},
            {"ReportDevicesCount", recorded.registry.Value(kCount).value_or(0)}};
}

}  // namespace faults_test
