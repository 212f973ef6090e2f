// The calls that a source makes, in a plain loop with nothing kept.
#pragma once

#include <cstddef>

namespace benchmarks {

/// The calls of AddAllDevicesToMap for at most 500 devices; returns how many there were.
std::size_t WalkDevices();

/// The calls of GetDisplayInfo; returns how many displays there were.
std::size_t WalkDisplays();

/// The calls of EnumPrinterList and ParsePrinters; returns how many printers there were.
std::size_t WalkPrinters();

/// The calls of ReportECLogInfo, its log line and its event empty; returns the event's bytes.
std::size_t AskEcLog();

}  // namespace benchmarks
