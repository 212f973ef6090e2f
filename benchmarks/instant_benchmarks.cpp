// The plug-in's own work: everything that it asks is answered at once.
#include <windows.h>

#include "instant/instant_calls.h"
#include "paired.h"

int main(int argumentCount, char** arguments) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    benchmarks::PutInstantDevices(redirection);
    benchmarks::PutInstantPrinters(redirection);
    benchmarks::PutInstantDisplays(redirection);
    benchmarks::PutInstantSuite(redirection);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
