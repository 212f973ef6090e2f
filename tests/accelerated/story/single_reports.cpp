#include "accelerated/story/single_reports.h"

#include <sstream>

namespace story {
namespace {

constexpr unsigned kEcLogCode = 675;
constexpr std::size_t kEcLogBytes = 253;

/// Without leading zeros.
std::string VersionText(const std::string& version) {
    std::string text;
    std::istringstream parts(version);
    for (std::string part; std::getline(parts, part, '.');) {
        text += (text.empty() ? "" : ".") + std::to_string(std::stoul(part));
    }
    return text;
}

std::string HexText(std::vector<std::uint8_t> bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    bytes.resize(kEcLogBytes);
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += {'0', 'x', kDigits[byte / 16], kDigits[byte % 16]};
    }
    return text;
}

}  // namespace

Outcome BiosReport(const MachineFacts& machine) {
    if (!machine.bios) {
        return {};
    }
    return {"",
            {{kBiosEvent,
              {{"Product", machine.bios->boardProduct},
               {"String7", machine.bios->oemProduct},
               {"Version", machine.bios->biosVersion}}}}};
}

Outcome OptimisationReport(const MachineFacts& machine, const World& world) {
    const bool found = world.switchesKey && machine.reporterSid == machine.switchesSid;
    if (!found || !world.popUpBlocking || !world.powerfulMode) {
        return {};
    }
    const bool on = *world.popUpBlocking == 1 || *world.powerfulMode == 1;
    return {"",
            {{kOptimisationEvent,
              {{"mode", "OPEN_MODE"},
               {"status", on ? "1" : "0"},
               {"version", VersionText(machine.componentVersion)}}}}};
}

Outcome FirmwareReport(const MachineFacts& machine, unsigned code) {
    if (code != kEcLogCode || !machine.firmwareEvents) {
        return {};
    }
    const EcLogFact& log = machine.ecLog;
    if (log.callResult != 0 || log.status != 0) {
        return {"ReadECLog error ret=" + std::to_string(log.callResult) +
                    ",status=" + std::to_string(log.status) + "(ReportECLogInfo)",
                {}};
    }
    return {"EC log data size is " + std::to_string(log.dataSize) + "(ReportECLogInfo)",
            {{kEcLogEvent, {{"ECLog", HexText(log.data)}}}}};
}

}  // namespace story
