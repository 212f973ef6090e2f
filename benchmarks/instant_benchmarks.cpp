// The plug-in's own work: everything that it asks is answered at once.
#include <windows.h>

#include "instant_system.h"
#include "paired.h"

int main(int argumentCount, char** arguments) {
    benchmarks::InstantMachine();
    benchmarks::UseInstantSuite();
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
