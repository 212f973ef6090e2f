// Print queues and their drivers, answered from the machine's printers: EnumPrintersW,
// OpenPrinterW, GetPrinterDriverW, ClosePrinter.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallPrintSpoolerFakes(ImportRedirection& redirection);

}  // namespace simulation
