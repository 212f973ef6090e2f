#include "accelerated/story/reports.h"

#include <algorithm>
#include <stdexcept>

#include "support/device_list_model.h"

namespace story {
namespace {

using simulation::Machine;

constexpr unsigned kEcLogCode = 675;
constexpr std::size_t kEcLogBytes = 253;
constexpr wchar_t kComponent[] =
    L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe";

std::string Ascii(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t unit : text) {
        if (unit >= 0x80) {
            throw std::runtime_error("the model knows no code page");
        }
        narrow += static_cast<char>(unit);
    }
    return narrow;
}

std::string ComponentVersion(const Machine& machine) {
    const auto found = machine.fileVersions.find(kComponent);
    std::string text;
    if (found != machine.fileVersions.end()) {
        for (const WORD number : found->second.product) {
            text += (text.empty() ? "" : ".") + std::to_string(number);
        }
    }
    return text;
}

std::wstring SidOf(const simulation::Logons& logons, const std::wstring& name) {
    const auto account = logons.accounts.find(name);
    return account == logons.accounts.end() ? std::wstring() : account->second;
}

/// Of the session's user, and where there is no user's token, of the account that the host runs as.
std::wstring SidOfSession(const simulation::Logons& logons, DWORD id) {
    for (const simulation::Session& session : logons.sessions) {
        if (session.id == id && !session.userName.empty() && session.tokenError == ERROR_SUCCESS) {
            return SidOf(logons, session.userName);
        }
    }
    // No name is that of the built-in domain.
    return logons.hostAccount.empty() ? L"S-1-5-32" : SidOf(logons, logons.hostAccount);
}

/// Of the account whose switches the plug-in looks for: only if the console gives none, the first
/// active session is asked.
std::wstring ReporterSid(const simulation::Logons& logons) {
    const std::wstring sid = SidOfSession(logons, logons.consoleSession);
    const auto active =
        std::find_if(logons.sessions.begin(), logons.sessions.end(),
                     [](const auto& session) { return session.state == WTSActive; });
    return !sid.empty() || active == logons.sessions.end() ? sid : SidOfSession(logons, active->id);
}

/// Of the account whose hive has the switches.
std::wstring SwitchesSid(const simulation::Logons& logons) {
    std::wstring sid;
    for (const simulation::Session& session : logons.sessions) {
        if (session.id == logons.consoleSession) {
            sid = SidOf(logons, session.userName);
        }
    }
    return sid;
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

Outcome BiosReport(const Machine& machine) {
    if (!machine.firmware) {
        return {};
    }
    return {"",
            {{kBiosEvent,
              {{"Product", Ascii(machine.firmware->boardProduct)},
               {"String7", Ascii(machine.firmware->oemProduct)},
               {"Version", Ascii(machine.firmware->biosVersion)}}}}};
}

Outcome OptimisationReport(const Machine& machine) {
    const auto& [biosTime, lists, popUpBlocking, powerfulMode] = machine.registry;
    const std::wstring sid = ReporterSid(machine.logons);
    if (sid.empty() || sid != SwitchesSid(machine.logons) || !popUpBlocking || !powerfulMode) {
        return {};
    }
    return {"",
            {{kOptimisationEvent,
              {{"mode", "OPEN_MODE"},
               {"status", *popUpBlocking == 1 || *powerfulMode == 1 ? "1" : "0"},
               {"version", ComponentVersion(machine)}}}}};
}

Outcome FirmwareReport(const Machine& machine, unsigned code) {
    if (code != kEcLogCode || machine.suite.firmwareStartResult != 0) {
        return {};
    }
    const simulation::EcLogAnswer& log = machine.suite.ecLog;
    if (log.callResult != 0 || log.status != 0) {
        return {"ReadECLog error ret=" + std::to_string(log.callResult) +
                    ",status=" + std::to_string(log.status) + "(ReportECLogInfo)",
                {}};
    }
    return {"EC log data size is " + std::to_string(log.dataSize) + "(ReportECLogInfo)",
            {{kEcLogEvent, {{"ECLog", HexText(log.data)}}}}};
}

Outcome DeviceListReport(const DeviceMap& inventory, const Machine& machine) {
    Outcome outcome{kListLine, {}};
    for (const test_support::EventFields& fields : test_support::ExpectedEvents(
             inventory, PrinterRecords(machine), DisplayRecords(machine))) {
        outcome.events.push_back({kDeviceListEvent, fields});
    }
    return outcome;
}

}  // namespace story
