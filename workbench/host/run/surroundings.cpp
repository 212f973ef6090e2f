#include "host/run/surroundings.h"

#include "host/files.h"
#include "host/host_error.h"
#include "host/run/simulated_surroundings.h"
#include "host/run/this_computer.h"
#include "simulation/machine_loader.h"

namespace host {
namespace {

simulation::Machine LoadMachineFile(const std::string& path) {
    try {
        return simulation::ParseMachine(ReadTextFile(path, "machine file"), path);
    } catch (const simulation::MachineFileError& error) {
        throw BadInput(error.what());
    }
}

}  // namespace

std::unique_ptr<Surroundings> MakeSurroundings(const Options& options, const Suite& suite,
                                               Screen& screen) {
    if (options.machine.empty()) {
        return std::make_unique<ThisComputer>(options.keptState, screen);
    }
    return std::make_unique<SimulatedSurroundings>(LoadMachineFile(options.machine),
                                                   options.machine, suite);
}

}  // namespace host
