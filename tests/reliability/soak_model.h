// What the plug-in has to send in each hour of a soak, from the rules alone.
#pragma once

#include <set>
#include <string>

#include "reliability/soak_story.h"

namespace reliability_test {

/// What is sent in an hour, or at Start.
struct Sent {
    unsigned bios = 0;
    std::string optimisation;  ///< "status version" of each, joined; empty when none is due.
    unsigned ecLogs = 0;
    unsigned lists = 0;
    std::set<unsigned> listed;  ///< Visitors that the list names.
    unsigned refusedForConsent = 0;

    std::string Text() const;
};

class SoakModel {
public:
    /// `listsSent` before this run.
    explicit SoakModel(unsigned listsSent) : listCount(listsSent) {}

    Sent Start();
    /// Each hour once, in order.
    Sent Pass(const Hour& hour);

    bool MonitorRuns() const { return listCount < 10; }
    unsigned ListCount() const { return listCount; }

private:
    void Bios(Sent& sent);
    void Optimisation(Sent& sent, bool versionFails);
    void DeviceList(Sent& sent);

    int now = 0;  ///< Hours since Start.
    int lastBios = -1000;
    int lastList = 0;
    unsigned listCount;
    std::set<unsigned> known;  ///< Visitors that the plug-in has seen.
    bool boardIsReadable = true;
    bool switchesExist = true;
    bool switchIsOn = true;
    std::string consent = "1";
    std::set<unsigned> present;
};

}  // namespace reliability_test
