#include "simulation/fake_call.h"

#include <cstdio>
#include <cstdlib>

namespace simulation {
namespace {

World& RequireWorld(const char* function) {
    World* const world = CurrentWorld();
    if (world == nullptr) {
        std::fprintf(stderr, "The fake of %s was called while no simulated machine is in force.\n",
                     function);
        std::abort();
    }
    return *world;
}

}  // namespace

FakeCall::FakeCall(const char* function)
    : lastError(GetLastError()),
      theWorld(RequireWorld(function)),
      journalled(theWorld.journal.IsKept()),
      sequence(journalled ? theWorld.journal.Begin(function) : 0),
      fault(theWorld.faults.Next(function)) {}

FakeCall::~FakeCall() {
    if (journalled) {
        theWorld.journal.Finish(sequence, std::move(arguments), std::move(resultText),
                                journalError);
    }
    SetLastError(lastError);
}

std::optional<DWORD> FakeCall::Refused(std::initializer_list<Refusal> refusals,
                                       FaultVariant ownUse) const {
    if (fault && (fault->variant == FaultVariant::Fail || fault->variant != ownUse)) {
        return fault->error;
    }
    for (const Refusal& refusal : refusals) {
        if (refusal.applies) {
            return refusal.error;
        }
    }
    return std::nullopt;
}

}  // namespace simulation
