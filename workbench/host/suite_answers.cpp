#include "host/suite_answers.h"

#include <algorithm>

namespace host {
namespace {

void SetFeatures(const Suite& suite, const std::map<std::string, int>& features) {
    suite.clearFeatures();
    for (const auto& [name, value] : features) {
        suite.setFeature(name.c_str(), value);
    }
}

/// The shelf stand-in knows one property, and the plug-in asks for this one only.
void SetShelf(const Suite& suite,
              const std::optional<std::multimap<std::string, std::string>>& shelf) {
    const std::pair<const std::string, std::string> region{"VRLoginGuide", "china"};
    const bool supported = shelf && std::find(shelf->begin(), shelf->end(), region) != shelf->end();
    suite.setShelfProperty(region.first.c_str(), region.second.c_str());
    suite.setShelf(shelf ? 1 : 0, supported ? 1 : 0);
}

}  // namespace

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
    SetFeatures(suite, machine.suite.features);
    SetShelf(suite, machine.suite.shelf);
}

}  // namespace host
