#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

decltype(::CloseHandle)* realCloseHandle = nullptr;

BOOL WINAPI FakeCloseHandle(HANDLE object) {
    FakeCall call("CloseHandle", Arg{"object", object});
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    ResourceLedger& ledger = call.world().ledger;
    for (const ResourceKind simulated : {ResourceKind::File, ResourceKind::Token}) {
        if (ledger.ReleaseIfOpen(simulated, object)) {
            return call.Returns(TRUE);
        }
    }
    if (ResourceLedger::IsSimulatedHandle(object)) {
        ledger.Release(ResourceKind::File, object);  // Not open: the ledger notes the error.
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    ledger.ReleaseIfOpen(ResourceKind::Thread, object);
    return call.PassTo(realCloseHandle, object);
}

}  // namespace

void InstallHandleFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"CloseHandle", FakeCloseHandle, &realCloseHandle},
    });
}

}  // namespace simulation
