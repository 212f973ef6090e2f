#include "reliability/soak_model.h"

namespace reliability_test {

std::string Sent::Text() const {
    std::string text = std::to_string(bios) + " BIOS, optimisation [" + optimisation + "], " +
                       std::to_string(ecLogs) + " EC logs, " + std::to_string(refusedForConsent) +
                       " refusals, " + std::to_string(lists) + " lists with visitors";
    for (const unsigned visitor : listed) {
        text += " " + std::to_string(visitor);
    }
    return text;
}

Sent SoakModel::Start() {
    Sent sent;
    Bios(sent);
    Optimisation(sent, /*versionFails=*/false);
    return sent;
}

Sent SoakModel::Pass(const Hour& hour) {
    Sent sent;
    if (hour.departure) {
        present.erase(*hour.departure);
    }
    if (hour.arrival) {
        present.insert(*hour.arrival);
        // Whatever is there by then is found; a device that is gone stays known.
        if (MonitorRuns() && !hour.arrivalIsUnreadable) {
            known.insert(present.begin(), present.end());
        }
    }
    sent.ecLogs = hour.firmwareRefuses ? 0 : hour.firmwareEvents;
    consent = hour.consent.value_or(consent);
    boardIsReadable = hour.boardIsReadable.value_or(boardIsReadable);
    switchesExist = hour.switchesExist.value_or(switchesExist);
    switchIsOn = hour.switchIsOn.value_or(switchIsOn);

    ++now;
    if (now % 12 == 0) {
        Bios(sent);
    }
    if (now % 24 == 0) {
        Optimisation(sent, hour.versionFails);
    }
    if (MonitorRuns() && !hour.postFails) {
        DeviceList(sent);
    }
    return sent;
}

void SoakModel::Bios(Sent& sent) {
    if (now - lastBios >= 72 && boardIsReadable) {
        sent.bios = 1;
        lastBios = now;
    }
}

void SoakModel::Optimisation(Sent& sent, bool versionFails) {
    if (switchesExist) {
        sent.optimisation = (switchIsOn ? "1 " : "0 ");
        sent.optimisation += versionFails ? "" : "12.0.3.105";
    }
}

void SoakModel::DeviceList(Sent& sent) {
    if (now - lastList < 24) {
        return;
    }
    if (consent != "1") {
        sent.refusedForConsent = 1;
        return;
    }
    sent.lists = 1;
    sent.listed = known;
    lastList = now;
    ++listCount;
}

}  // namespace reliability_test
