#include "simulation/loader/object_shapes.h"

namespace simulation {

const ObjectShape kMachineShape{
    "machine",
    {"$schema", "description", "devices", "printers", "display", "logons", "firmware", "suite",
     "registry", "fileVersions", "clocks"}};
const ObjectShape kDeviceShape{"device",
                               {"id", "present", "removable", "status", "problem", "statusResult",
                                "properties", "interfaces"}};
const ObjectShape kDeviceGroupShape{"deviceGroup", {"repeat", "devices"}};
const ObjectShape kPropertyShape{"property",
                                 {"string", "strings", "guid", "uint32", "type", "hex"}};
const ObjectShape kInterfaceShape{"interface", {"class", "path", "hid"}};
const ObjectShape kHidShape{"hid", {"product", "manufacturer", "openError"}};
const ObjectShape kPrinterShape{"printer",
                                {"name", "driverName", "dataType", "portName", "driver"}};
const ObjectShape kPrinterDriverShape{"printerDriver", {"manufacturer", "hardwareId"}};
const ObjectShape kDisplayShape{"display", {"topology", "paths"}};
const ObjectShape kDisplayPathShape{"displayPath",
                                    {"sourceAdapter", "targetAdapter", "sourceId", "targetId",
                                     "gdiName", "friendlyName", "devicePath", "edid", "mode"}};
const ObjectShape kDisplayModeShape{"displayMode",
                                    {"width", "height", "frequency", "logPixels", "bitsPerPixel"}};
const ObjectShape kLogonsShape{"logons", {"consoleSession", "sessions", "hostAccount", "accounts"}};
const ObjectShape kSessionShape{"session", {"id", "state", "user", "tokenError"}};
const ObjectShape kFirmwareShape{"firmware", {"boardProduct", "oemProduct", "biosVersion"}};
const ObjectShape kSuiteShape{"suite",
                              {"consent", "features", "shelf", "ecLog", "firmwareStartResult"}};
const ObjectShape kEcLogShape{"ecLog", {"callResult", "status", "dataSize", "data"}};
const ObjectShape kRegistryShape{
    "registry", {"biosReportTime", "reportDevicesCount", "popUpBlocking", "powerfulMode"}};
const ObjectShape kFileVersionShape{"fileVersion", {"file", "product"}};
const ObjectShape kClocksShape{"clocks", {"unixSeconds", "steadyNanoseconds"}};

std::vector<const ObjectShape*> AllObjectShapes() {
    return {&kMachineShape,   &kDeviceShape,      &kDeviceGroupShape, &kPropertyShape,
            &kInterfaceShape, &kHidShape,         &kPrinterShape,     &kPrinterDriverShape,
            &kDisplayShape,   &kDisplayPathShape, &kDisplayModeShape, &kLogonsShape,
            &kSessionShape,   &kFirmwareShape,    &kSuiteShape,       &kEcLogShape,
            &kRegistryShape,  &kFileVersionShape, &kClocksShape};
}

}  // namespace simulation
