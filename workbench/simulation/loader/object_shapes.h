// The kinds of JSON objects in machine files and the keys that each may have. The schema beside the
// machine files defines the same ones.
#pragma once

#include <string_view>
#include <vector>

namespace simulation {

struct ObjectShape {
    std::string_view name;  ///< Its definition in the schema.
    std::vector<std::string_view> keys;
};

extern const ObjectShape kMachineShape;
extern const ObjectShape kDeviceShape;
extern const ObjectShape kDeviceGroupShape;
extern const ObjectShape kPropertyShape;
extern const ObjectShape kInterfaceShape;
extern const ObjectShape kHidShape;
extern const ObjectShape kPrinterShape;
extern const ObjectShape kPrinterDriverShape;
extern const ObjectShape kDisplayShape;
extern const ObjectShape kDisplayPathShape;
extern const ObjectShape kDisplayModeShape;
extern const ObjectShape kLogonsShape;
extern const ObjectShape kSessionShape;
extern const ObjectShape kFirmwareShape;
extern const ObjectShape kSuiteShape;
extern const ObjectShape kEcLogShape;
extern const ObjectShape kRegistryShape;
extern const ObjectShape kFileVersionShape;
extern const ObjectShape kClocksShape;

std::vector<const ObjectShape*> AllObjectShapes();

}  // namespace simulation
