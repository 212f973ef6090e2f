// The calls of the suite's libraries, which fail through their control headers.
#pragma once

#include <string>
#include <vector>

#include "faults/scenario.h"
#include "support/recorded_suite.h"

namespace faults_test {

/// The suite around the plug-in, answering as the machine describes, except for the planned fault:
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
    SuiteOfScenario(const simulation::Machine& machine, const std::optional<PlannedFault>& fault);
    ~SuiteOfScenario();
    SuiteOfScenario(const SuiteOfScenario&) = delete;
    SuiteOfScenario& operator=(const SuiteOfScenario&) = delete;

    /// Of a call of the suite: whether it was applied.
    bool FaultApplied() const { return applied; }
    std::vector<Call> Calls() const;
    /// The two values that the plug-in keeps.
    Json RegistryState() const;

    test_support::RecordedSuite recorded;

private:
    void PrepareRegistry(const simulation::Machine& machine);
    bool Apply(const PlannedFault& fault, const simulation::Machine& machine);
    bool ApplyToFirmware(const PlannedFault& fault, const simulation::Machine& machine);

    bool applied = false;
};

}  // namespace faults_test
