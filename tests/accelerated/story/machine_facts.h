// What a machine file says, read straight from its JSON: the model must not share a mistake of the
// simulation's own loader.
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace story {

struct InterfaceFact {
    std::string classGuid;  ///< "{4D1E55B2-...}", capital letters.
    bool opens = false;     ///< Whether its path can be opened.
    std::optional<std::wstring> product;
    std::optional<std::wstring> manufacturer;
};

struct DeviceFact {
    std::wstring id;
    bool present = true;
    bool removable = false;
    /// What the system answers, as text, by the machine file's name of the property.
    std::map<std::string, std::wstring> properties;
    std::vector<InterfaceFact> interfaces;
};

struct PrinterFact {
    std::optional<std::wstring> name, driverName, dataType, portName;
    std::optional<std::wstring> maker, hardwareId;  ///< Of the driver, if that is installed.
};

struct DisplayFact {
    std::wstring friendlyName, devicePath;
    std::optional<std::vector<std::uint8_t>> edid;
    bool hasMode = true;
    unsigned width = 1920, height = 1080, frequency = 60;
};

struct BiosFact {
    std::string boardProduct, oemProduct, biosVersion;
};

struct EcLogFact {
    int callResult = 0;
    int status = 0;
    int dataSize = 0;
    std::vector<std::uint8_t> data;
};

struct MachineFacts {
    std::vector<DeviceFact> devices;  ///< In the order in which the system lists them.
    std::vector<PrinterFact> printers;
    unsigned topology = 1;
    std::vector<DisplayFact> displays;
    std::optional<BiosFact> bios;
    EcLogFact ecLog;
    bool firmwareEvents = true;
    std::string consent = "1";
    std::map<std::string, int> features;
    bool hasShelf = false;
    bool shelfSaysChina = false;
    std::string reporterSid;  ///< Of the account whose switches the plug-in looks for.
    std::string switchesSid;  ///< Of the account whose hive has switches; empty: nobody's.
    std::optional<int> popUpBlocking, powerfulMode;
    std::optional<std::int64_t> biosReportTime;
    std::optional<int> reportDevicesCount;
    std::string componentVersion;  ///< "12.0.3.105"; empty: not installed.
};

/// Throws std::runtime_error where the file says something that the model does not know.
MachineFacts ReadMachineFacts(const nlohmann::json& machine);

/// The part for devices.
std::vector<DeviceFact> ReadDeviceFacts(const nlohmann::json& machine);
/// "0A FF" or a list of such texts.
std::vector<std::uint8_t> ReadBytes(const nlohmann::json& value);
/// Absent where the member is null or missing.
std::optional<std::wstring> ReadText(const nlohmann::json& object, const char* key);

/// The member, or a default.
template <typename T>
T MemberOr(const nlohmann::json& object, const char* key, T otherwise) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? otherwise : found->template get<T>();
}

}  // namespace story
