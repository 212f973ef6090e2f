// The schema of machine files, which editors complete by, against what the loader knows.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "simulation/machine_loader.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

// Where each definition of the schema is used, with a key there that nobody knows.
const std::map<std::string, const char*> kUses{
    {"machine", R"({"?": 0})"},
    {"device", R"({"devices": [{"?": 0}]})"},
    {"deviceGroup", R"({"devices": [{"repeat": 1, "?": 0}]})"},
    {"properties", R"({"devices": [{"id": "A", "properties": {"?": 0}}]})"},
    {"property", R"({"devices": [{"id": "A", "properties": {"Name": {"?": 0}}}]})"},
    {"interface", R"({"devices": [{"id": "A", "interfaces": [{"?": 0}]}]})"},
    {"hid", R"({"devices": [{"id": "A", "interfaces": [
                {"class": "hid", "path": "p", "hid": {"?": 0}}]}]})"},
    {"printer", R"({"printers": [{"?": 0}]})"},
    {"printerDriver", R"({"printers": [{"driver": {"?": 0}}]})"},
    {"display", R"({"display": {"?": 0}})"},
    {"displayPath", R"({"display": {"paths": [{"?": 0}]}})"},
    {"displayMode", R"({"display": {"paths": [{"mode": {"?": 0}}]}})"},
    {"logons", R"({"logons": {"?": 0}})"},
    {"session", R"({"logons": {"sessions": [{"?": 0}]}})"},
    {"firmware", R"({"firmware": {"?": 0}})"},
    {"suite", R"({"suite": {"?": 0}})"},
    {"ecLog", R"({"suite": {"ecLog": {"?": 0}}})"},
    {"registry", R"({"registry": {"?": 0}})"},
    {"fileVersion", R"({"fileVersions": {"a": {"?": 0}}})"},
};

/// The loader refuses the key and names those that it knows instead.
std::set<std::string> KeysThatTheLoaderKnows(const char* document) {
    std::string complaint = "no complaint";
    try {
        ParseMachine(document, "");
    } catch (const MachineFileError& error) {
        complaint = error.what();
    }
    const std::string begin = "known here are ";
    const std::size_t found = complaint.find(begin);
    if (found == std::string::npos) {
        return {complaint};
    }
    return nlohmann::json::parse("[" + complaint.substr(found + begin.size()) + "]");
}

TEST(MachineSchema, DefinesWhatTheLoaderKnows) {
    std::ifstream stream(std::filesystem::path(MACHINE_FOLDER) / "machine.schema.json");
    const nlohmann::json definitions = nlohmann::json::parse(stream).at("$defs");
    std::size_t objects = 0;
    for (const auto& [name, definition] : definitions.items()) {
        if (!definition.contains("properties")) {
            continue;
        }
        SCOPED_TRACE(name);
        ++objects;
        std::set<std::string> keys;
        for (const auto& [key, value] : definition.at("properties").items()) {
            keys.insert(key);
        }
        EXPECT_EQ(KeysThatTheLoaderKnows(kUses.at(name)), keys);
        EXPECT_EQ(definition.at("additionalProperties"), false);
    }
    EXPECT_EQ(objects, kUses.size());
    for (const NamedInterfaceClass& known : kNamedInterfaceClasses) {
        EXPECT_THAT(definitions["interface"]["properties"]["class"]["oneOf"][0]["enum"],
                    ::testing::Contains(known.name));
    }
}

}  // namespace
}  // namespace simulation
