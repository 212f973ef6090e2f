#include "accelerated/story/machine_facts.h"

#include <algorithm>
#include <stdexcept>

#include "accelerated/story/text.h"

namespace story {
namespace {

using nlohmann::json;

constexpr char kComponent[] =
    "C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe";

std::wstring TextOr(const json& object, const char* key) {
    return ReadText(object, key).value_or(std::wstring());
}

PrinterFact ReadPrinter(const json& value) {
    const json driver = value.value("driver", json());
    const json driverTexts = driver.is_object() ? driver : json::object();
    return {ReadText(value, "name"),
            ReadText(value, "driverName"),
            ReadText(value, "dataType"),
            ReadText(value, "portName"),
            ReadText(driverTexts, "manufacturer"),
            ReadText(driverTexts, "hardwareId")};
}

DisplayFact ReadDisplay(const json& value) {
    DisplayFact fact;
    fact.friendlyName = TextOr(value, "friendlyName");
    fact.devicePath = TextOr(value, "devicePath");
    const json edid = value.value("edid", json());
    if (!edid.is_null()) {
        fact.edid = ReadBytes(edid);
    }
    const json mode = value.value("mode", json::object());
    fact.hasMode = !mode.is_null();
    if (fact.hasMode) {
        fact.width = MemberOr(mode, "width", fact.width) & 0xFFFF;
        fact.height = MemberOr(mode, "height", fact.height) & 0xFFFF;
        fact.frequency = MemberOr(mode, "frequency", fact.frequency) & 0xFFFF;
    }
    return fact;
}

void ReadDisplays(const json& display, MachineFacts& facts) {
    const json topology = display.value("topology", json("internal"));
    static const std::map<std::string, unsigned> kWords{
        {"internal", 1}, {"clone", 2}, {"extend", 4}, {"external", 8}};
    facts.topology =
        topology.is_string() ? kWords.at(topology.get<std::string>()) : topology.get<unsigned>();
    for (const json& path : display.value("paths", json::array())) {
        facts.displays.push_back(ReadDisplay(path));
    }
}

std::string AsciiText(const json& object, const char* key) {
    auto text = MemberOr(object, key, std::string());
    if (std::any_of(text.begin(), text.end(), [](char unit) { return (unit & 0x80) != 0; })) {
        throw std::runtime_error("the model knows no code page for \"" + text + "\"");
    }
    return text;
}

void ReadBios(const json& machine, MachineFacts& facts) {
    const json firmware = machine.value("firmware", json::object());
    if (!firmware.is_null()) {
        facts.bios =
            BiosFact{AsciiText(firmware, "boardProduct"), AsciiText(firmware, "oemProduct"),
                     AsciiText(firmware, "biosVersion")};
    }
}

void ReadSuite(const json& suite, MachineFacts& facts) {
    facts.consent = MemberOr(suite, "consent", facts.consent);
    facts.features = MemberOr(suite, "features", facts.features);
    facts.firmwareEvents = MemberOr(suite, "firmwareStartResult", 0) == 0;
    const json shelf = suite.value("shelf", json());
    facts.hasShelf = shelf.is_object();
    if (facts.hasShelf) {
        const auto values = MemberOr(shelf, "VRLoginGuide", std::vector<std::string>());
        facts.shelfSaysChina = std::find(values.begin(), values.end(), "china") != values.end();
    }
    const json log = suite.value("ecLog", json::object());
    facts.ecLog.callResult = MemberOr(log, "callResult", 0);
    facts.ecLog.status = MemberOr(log, "status", 0);
    facts.ecLog.data = log.contains("data") ? ReadBytes(log["data"]) : std::vector<std::uint8_t>();
    facts.ecLog.dataSize = MemberOr(log, "dataSize", static_cast<int>(facts.ecLog.data.size()));
}

/// The user at the console is looked up by name, and where there is no user's token, the account
/// that the host runs as. Only if that has no SID, the first active session is asked.
void ReadAccounts(const json& logons, MachineFacts& facts) {
    const auto accounts =
        MemberOr(logons, "accounts",
                 std::map<std::string, std::string>{{"NT AUTHORITY\\SYSTEM", "S-1-5-18"}});
    const auto hostAccount = MemberOr(logons, "hostAccount", std::string("NT AUTHORITY\\SYSTEM"));
    const json sessions = logons.value("sessions", json::array());
    const json console = logons.value("consoleSession", json());
    const auto sidOf = [&](const std::string& name) {
        const auto account = accounts.find(name);
        return account == accounts.end() ? std::string() : account->second;
    };
    const auto reporterOf = [&](const json& id) {
        for (const json& session : sessions) {
            const auto user = MemberOr(session, "user", std::string());
            if (session.at("id") == id && !user.empty() &&
                MemberOr(session, "tokenError", 0U) == 0) {
                return sidOf(user);
            }
        }
        return sidOf(hostAccount);
    };
    facts.reporterSid = reporterOf(console);
    for (auto session = sessions.begin(); facts.reporterSid.empty() && session != sessions.end();
         ++session) {
        if (MemberOr(*session, "state", std::string("active")) == "active") {
            facts.reporterSid = reporterOf(session->at("id"));
            break;
        }
    }
    for (const json& session : sessions) {
        if (session.at("id") == console) {
            facts.switchesSid = sidOf(MemberOr(session, "user", std::string()));
        }
    }
}

template <typename T>
std::optional<T> OptionalNumber(const json& object, const char* key) {
    const json value = object.value(key, json());
    return value.is_null() ? std::nullopt : std::optional(value.get<T>());
}

}  // namespace

std::vector<std::uint8_t> ReadBytes(const json& value) {
    std::vector<std::uint8_t> bytes;
    for (const json& line : value.is_array() ? value : json::array({value})) {
        std::string digits = line.get<std::string>();
        digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
            bytes.push_back(
                static_cast<std::uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
        }
    }
    return bytes;
}

std::optional<std::wstring> ReadText(const json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null()
               ? std::nullopt
               : std::optional(Utf16FromUtf8(found->get<std::string>()));
}

MachineFacts ReadMachineFacts(const json& machine) {
    MachineFacts facts;
    facts.devices = ReadDeviceFacts(machine);
    for (const json& printer : machine.value("printers", json::array())) {
        facts.printers.push_back(ReadPrinter(printer));
    }
    ReadDisplays(machine.value("display", json::object()), facts);
    ReadBios(machine, facts);
    ReadSuite(machine.value("suite", json::object()), facts);
    ReadAccounts(machine.value("logons", json::object()), facts);
    const json registry = machine.value("registry", json::object());
    facts.popUpBlocking = OptionalNumber<int>(registry, "popUpBlocking");
    facts.powerfulMode = OptionalNumber<int>(registry, "powerfulMode");
    facts.biosReportTime = OptionalNumber<std::int64_t>(registry, "biosReportTime");
    facts.reportDevicesCount = OptionalNumber<int>(registry, "reportDevicesCount");
    const json versions = machine.value("fileVersions", json::object());
    if (versions.contains(kComponent)) {
        facts.componentVersion = versions[kComponent].at("product").get<std::string>();
    }
    return facts;
}

}  // namespace story
