// The schema of machine files, which editors complete by, against what the loader knows.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "simulation/loader/object_shapes.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

using ::testing::UnorderedElementsAreArray;

class MachineSchema : public ::testing::Test {
protected:
    MachineSchema() {
        std::ifstream stream(std::filesystem::path(MACHINE_FOLDER) / "machine.schema.json");
        definitions = nlohmann::json::parse(stream).at("$defs");
    }

    std::vector<std::string> KeysOf(const std::string& name) const {
        std::vector<std::string> keys;
        for (const auto& [key, value] : definitions.at(name).at("properties").items()) {
            keys.push_back(key);
        }
        return keys;
    }

    nlohmann::json definitions;
};

TEST_F(MachineSchema, DefinesTheKeysThatTheLoaderKnows) {
    for (const ObjectShape* shape : AllObjectShapes()) {
        const std::string name(shape->name);
        SCOPED_TRACE(name);
        ASSERT_TRUE(definitions.contains(name));
        EXPECT_THAT(KeysOf(name), UnorderedElementsAreArray(shape->keys));
        EXPECT_EQ(definitions.at(name).at("additionalProperties"), false);
    }
}

TEST_F(MachineSchema, DefinesNoObjectThatTheLoaderDoesNotKnow) {
    std::vector<std::string> known{"properties"};
    for (const ObjectShape* shape : AllObjectShapes()) {
        known.emplace_back(shape->name);
    }
    for (const auto& [name, definition] : definitions.items()) {
        if (definition.contains("properties")) {
            EXPECT_THAT(known, ::testing::Contains(name));
        }
    }
}

TEST_F(MachineSchema, DefinesTheNamedPropertyKeysAndInterfaceClasses) {
    std::vector<std::string> names;
    for (const NamedPropertyKey& known : NamedPropertyKeys()) {
        names.emplace_back(known.name);
    }
    EXPECT_THAT(KeysOf("properties"), UnorderedElementsAreArray(names));

    std::vector<std::string> classes;
    for (const NamedInterfaceClass& known : NamedInterfaceClasses()) {
        classes.emplace_back(known.name);
    }
    const auto allowed = definitions.at("interface")
                             .at("properties")
                             .at("class")
                             .at("oneOf")
                             .at(0)
                             .at("enum")
                             .get<std::vector<std::string>>();
    EXPECT_THAT(allowed, UnorderedElementsAreArray(classes));
}

}  // namespace
}  // namespace simulation
