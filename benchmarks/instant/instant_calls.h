// Answers that are ready when they are asked for, in place of the operating system and of the
// suite's libraries. What is measured with them is the plug-in's own work.
//
// The optimiser takes the address of an imported function for constant, so they are put in place
// before anything of the product runs and stay until the program ends.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "simulation/import_redirection.h"
#include "simulation/machine.h"

namespace benchmarks {

/// Makes `redirection`'s module call `replacement`; nothing where it has no such import.
void Put(simulation::ImportRedirection& redirection, const char* name, void* replacement);

/// The machine's devices: enumeration, ids, status and properties.
void PutInstantDevices(simulation::ImportRedirection& redirection);
/// What they answer with, from now on. Not while a walk is under way.
void SetInstantDevices(std::vector<simulation::Device> devices);

/// The local print queues and their drivers.
void PutInstantPrinters(simulation::ImportRedirection& redirection);
void SetInstantPrinters(std::size_t count);

/// Active display paths, their names and modes, and 256 bytes of EDID for each.
void PutInstantDisplays(simulation::ImportRedirection& redirection);
void SetInstantDisplays(std::size_t count);

/// The monitor's window, whose first message ends the monitor's thread.
void PutInstantWindow(simulation::ImportRedirection& redirection);
/// How many monitors have taken down what they made; their threads end right after.
unsigned EndedMonitors();

/// Who is logged on, and the version of the optimisation component.
void PutInstantLogon(simulation::ImportRedirection& redirection);

/// Log, events, registry helper, firmware texts and events, consent and feature switches. Devices
/// are to be reported, the user agreed, the last BIOS report is long ago.
void PutInstantSuite(simulation::ImportRedirection& redirection);
/// Bytes of all values of events so far.
std::size_t EventBytes();
/// The values of the events are appended to the text from now on; null ends that.
void CollectEventValues(std::string* text);

}  // namespace benchmarks
