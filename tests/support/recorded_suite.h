// The whole suite around the plug-in, recorded and steered by a test.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "simulation/memory_registry.h"
#include "support/recorded_events.h"
#include "support/recorded_log.h"
#include "support/timeline.h"

namespace test_support {

/// While it lives, log lines, events, registry accesses and calls of BoardInfo and WmiKit are
/// noted in one timeline; the latter two as "SmBiosHelper::GetInstance" and
/// "BiosEventMonitor::StartEventMonitor". The destructor puts every library back to its defaults.
/// One at a time in a process.
class RecordedSuite {
public:
    /// The machine's texts are "Board", "Oem" and "Bios"; the machine is of a type that does not
    /// report devices.
    RecordedSuite();
    ~RecordedSuite();
    RecordedSuite(const RecordedSuite&) = delete;
    RecordedSuite& operator=(const RecordedSuite&) = delete;

    Timeline timeline;
    RecordedLog log{timeline};
    RecordedEvents events{timeline};
    simulation::MemoryRegistry registry{
        [this](const std::string& access) { timeline.Note(access); }};

    /// Called with "GetBiosInfo", "StartEventMonitor" or "StopEventMonitor" and the request's bytes
    /// before WmiKit answers, on the calling thread, which waits for it. Set before use.
    std::function<void(const std::string& operation, const std::string& bytes)> onWmiCall;

private:
    static void ObserveBoardInfo(void* context, const char* operation);
    static void ObserveWmi(void* context, const char* operation, const void* bytes,
                           std::size_t length);
};

}  // namespace test_support
