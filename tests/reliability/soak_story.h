// What happens to the machine in the hours of a soak.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fuzz/random.h"

namespace reliability_test {

/// Everything that happens in one hour, before the timer's tick at its end.
struct Hour {
    std::optional<unsigned> arrival;    ///< A device is plugged in.
    std::optional<unsigned> departure;  ///< And one is unplugged.
    bool arrivalIsUnreadable = false;   ///< The system refuses to list the devices then.
    unsigned firmwareEvents = 0;        ///< With the code that the plug-in waits for.
    bool otherFirmwareEvent = false;
    bool firmwareRefuses = false;  ///< To hand out its log, during this hour.
    std::optional<std::string> consent;
    std::optional<bool> boardIsReadable;
    std::optional<bool> switchesExist;
    std::optional<bool> switchIsOn;
    bool postFails = false;     ///< Of the tick's message to the monitor.
    bool spoolerFails = false;  ///< When the list is made.
    bool displaysFail = false;  ///< When the list is made.
    bool versionFails = false;  ///< Of the optimisation component.
};

Hour RandomHour(fuzz::Random& random);

}  // namespace reliability_test
