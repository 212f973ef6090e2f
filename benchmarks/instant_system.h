// The simulated machine and the suite's stand-ins, without journal and without a console: they
// answer at once. Floors make the same calls, so that the time of an answer is on both sides.
//
// The optimiser takes the address of an imported function for constant, so they are put in place
// before anything of the product runs and stay until the program ends.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "simulation/simulated_machine.h"

namespace benchmarks {

/// The machine of the program's own calls.
simulation::SimulatedMachine& InstantMachine();

/// Log, events, registry helper, firmware texts and events, consent and feature switches. Devices
/// are to be reported, the user agreed, the last BIOS report is long ago.
void UseInstantSuite();

/// Bytes of all values of events so far.
std::size_t EventBytes();
/// The values of the events are appended to the text from now on; null ends that.
void CollectEventValues(std::string* text);

}  // namespace benchmarks
