// The calls of the suite's libraries, which fail through their control headers.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "faults/scenario.h"
#include "support/recorded_suite.h"

namespace faults_test {

/// The suite around the plug-in, answering as the machine describes, except for the planned faults:
///     SmBiosHelper::GetInstance         Null
///     SmBiosHelper::Get...              Empty
///     exists KEY, read ... , write ...  Fail with an error number
///     FeatureSwitch::QueryFeature       Unknown, Fail (but with the value), Other value
///     ZedSoftShelf::GetInstance         Null
///     ZedSoftShelf::IsSupportProperty   Fail
///     AgreementSign::IsAgreeClause      Empty, EmptyOnce
///     BiosEventMonitor::StartEventMonitor  Fail with a result
///     BiosWmi::GetBiosInfo              Fail with a result, Status, Nothing
class SuiteOfScenario {
public:
    explicit SuiteOfScenario(const simulation::Machine& machine,
                             const std::vector<PlannedFault>& faults = {});
    ~SuiteOfScenario();
    SuiteOfScenario(const SuiteOfScenario&) = delete;
    SuiteOfScenario& operator=(const SuiteOfScenario&) = delete;

    /// Those of the planned faults that are not of the suite's calls.
    const std::vector<PlannedFault>& OtherFaults() const { return others; }
    std::vector<Call> Calls() const;
    /// The two values that the plug-in keeps.
    Json RegistryState() const;

    test_support::RecordedSuite recorded;

private:
    void PrepareRegistry(const simulation::Machine& machine);
    bool Apply(const PlannedFault& fault, const simulation::Machine& machine);
    bool ApplyToFirmware(const PlannedFault& fault, const simulation::Machine& machine);

    std::vector<PlannedFault> others;
    std::set<std::string> emptyTexts;  ///< By the operation that asks for them.
};

}  // namespace faults_test
