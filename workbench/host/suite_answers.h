// What the suite's libraries answer on a simulated machine.
#pragma once

#include "host/suite.h"
#include "simulation/machine.h"

namespace host {

/// Sets consent, features, shelf, firmware texts and firmware answers as the machine says.
void SetSuiteAnswers(const Suite& suite, const simulation::Machine& machine);

}  // namespace host
