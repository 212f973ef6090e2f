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
      sequence(theWorld.journal.Begin(function)),
      fault(theWorld.faults.Next(function)) {}

FakeCall::~FakeCall() {
    theWorld.journal.Finish(sequence, std::move(arguments), std::move(resultText), journalError);
    SetLastError(lastError);
}

}  // namespace simulation
