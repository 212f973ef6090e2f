#include "reliability/soak_story.h"

#include "reliability/visitors.h"

namespace reliability_test {

Hour RandomHour(fuzz::Random& random) {
    Hour hour;
    if (!random.OneIn(3)) {
        hour.arrival = static_cast<unsigned>(random.Below(kVisitors));
        hour.arrivalIsUnreadable = random.OneIn(6);
    }
    if (random.OneIn(2)) {
        hour.departure = static_cast<unsigned>(random.Below(kVisitors));
    }
    hour.firmwareEvents = random.OneIn(4) ? static_cast<unsigned>(random.Between(1, 3)) : 0;
    hour.otherFirmwareEvent = random.OneIn(8);
    hour.firmwareRefuses = random.OneIn(5);
    // Rarely given and soon withdrawn, so that the ten lists last for weeks.
    if (random.OneIn(50)) {
        hour.consent = "1";
    } else if (random.OneIn(4)) {
        hour.consent = random.OneIn(2) ? "0" : "";
    }
    if (random.OneIn(6)) {
        hour.boardIsReadable = !random.OneIn(3);
    }
    if (random.OneIn(6)) {
        hour.switchesExist = !random.OneIn(3);
    }
    if (random.OneIn(6)) {
        hour.switchIsOn = random.OneIn(2);
    }
    hour.postFails = random.OneIn(20);
    hour.spoolerFails = random.OneIn(4);
    hour.displaysFail = random.OneIn(4);
    hour.versionFails = random.OneIn(4);
    return hour;
}

}  // namespace reliability_test
