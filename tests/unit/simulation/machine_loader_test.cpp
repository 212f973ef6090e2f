#include "simulation/machine_loader.h"

#include <gmock/gmock.h>

#include "simulation/call_text.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

std::string ErrorOf(const std::string& document) {
    try {
        ParseMachine(document, "desk.json");
        return "no error";
    } catch (const MachineFileError& error) {
        return error.what();
    }
}

struct BrokenDocument {
    const char* document;
    const char* complaint;
};

void PrintTo(const BrokenDocument& broken, std::ostream* stream) { *stream << broken.document; }

class BrokenMachineFile : public ::testing::TestWithParam<BrokenDocument> {};

TEST_P(BrokenMachineFile, IsRefusedNamingFilePlaceAndExpectation) {
    EXPECT_EQ(ErrorOf(GetParam().document), std::string("desk.json: ") + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Defects, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{"[]", "the document: expected an object, found a list"},
        BrokenDocument{"[,]",
                       "not JSON: parse error at line 1, column 2: syntax error while parsing "
                       "value - unexpected ','; expected '[', '{', or a literal"},
        BrokenDocument{R"({"registry": {"biosReportTime": 1e999}})",
                       "not JSON: number overflow parsing '1e999'"},
        BrokenDocument{R"({"registry": {"popUpBlocking": 1, "popUpBlocking": 2}})",
                       "the key \"popUpBlocking\" occurs twice in one object"},
        BrokenDocument{R"({"fileVersions": {"a": {"pro\nduct": 1}}})",
                       "/fileVersions/a: unknown key \"pro<U+000A>duct\"; known here are "
                       "\"product\", \"file\""},
        BrokenDocument{R"({"devices": [{}]})", "/devices/0: the key \"id\" is missing"},
        BrokenDocument{R"({"devices": [{"id": "A"}, {"id": "A"}]})",
                       "/devices/1: a device with the same \"id\" comes before"},
        BrokenDocument{R"({"devices": [{"id": "A\u0000B"}]})",
                       "/devices/0/id: expected a text without U+0000, found \"A\\u0000B\""},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"{A45C254E}": {"uint32": 1}}}]})",
                       "/devices/0/properties/{A45C254E}: expected a property key such as "
                       "\"{A45C254E-DF1C-4EFD-8020-67D146A850E0} 14\""},
        BrokenDocument{
            R"({"devices": [{"id": "A", "properties": {"Name": {"string": "", "type": 1}}}]})",
            "/devices/0/properties/Name: expected \"string\", \"strings\", \"guid\", \"uint32\" or "
            "the pair \"type\" and \"hex\""},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"ContainerId": "{0}"}}]})",
                       "/devices/0/properties/ContainerId: expected a GUID such as "
                       "\"{4D1E55B2-F16F-11CF-88CB-001111000030}\", found \"{0}\""},
        BrokenDocument{R"({"devices": [{"repeat": 2, "devices": [{"id": "A${n:x}"}]}]})",
                       "/devices/0/devices/0/id: expected ${n}, ${n:4} or ${n:4X}, found "
                       "\"${n:x}\""},
        BrokenDocument{R"({"display": {"topology": "mirror"}})",
                       "/display/topology: expected one of \"internal\", \"clone\", \"extend\", "
                       "\"external\", found \"mirror\""},
        BrokenDocument{R"({"display": {"paths": [{"edid": ["00", "0G"]}]}})",
                       "/display/paths/0/edid/1: expected pairs of hex digits, found \"0G\" at "
                       "character 1"},
        BrokenDocument{R"({"registry": {"popUpBlocking": 1.5}})",
                       "/registry/popUpBlocking: expected a whole number from -2147483648 to "
                       "2147483647, found 1.5"},
        BrokenDocument{R"({"logons": {"accounts": {"a/b~": "S-1-x"}}})",
                       "/logons/accounts/a~1b~0: expected a SID such as \"S-1-5-21-1-2-3-1001\", "
                       "found \"S-1-x\""},
        BrokenDocument{R"({"fileVersions": {"a": {"product": "1.2.3.65536"}}})",
                       "/fileVersions/a/product: expected four numbers up to 65535 such as "
                       "\"12.0.3.105\", found \"1.2.3.65536\""}));

TEST(MachineLoader, NamesAFileThatCannotBeOpened) {
    try {
        LoadMachine("no_such_folder\\machine.json");
        FAIL() << "a file that does not exist was loaded";
    } catch (const MachineFileError& error) {
        EXPECT_STREQ(error.what(), "no_such_folder\\machine.json: the file cannot be opened");
    }
}

TEST(MachineLoader, ReadsDevices) {
    const Machine machine = ParseMachine(R"({"devices": [{
        "id": "HID\\VID_1&Col01", "removable": true, "present": false, "statusResult": 13,
        "properties": {
            "Class": "Keyboard",
            "ContainerId": "{4d1e55b2-f16f-11cf-88cb-001111000030}",
            "HardwareIds": ["a", "b"],
            "Name": {"type": 25, "hex": ["01 02", "03"]},
            "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 15": {"uint32": 4294967295}},
        "interfaces": [{"class": "{01020304-0506-0708-090A-0B0C0D0E0F10}", "path": "p",
                        "hid": {"product": "T\u00e4", "manufacturer": null, "openError": 5}}]},
        {"repeat": 11, "devices": [{"id": "A${n}"}, {"id": "B${n:2X}-${n:3}"}]}]})",
                                         "");
    ASSERT_EQ(machine.devices.size(), 23u);
    EXPECT_EQ(machine.devices[1].instanceId, L"A1");
    EXPECT_EQ(machine.devices[22].instanceId, L"B0B-011");
    const Device& device = machine.devices[0];
    EXPECT_EQ(device.instanceId, L"HID\\VID_1&Col01");
    EXPECT_FALSE(device.present);
    EXPECT_EQ(device.status, kDeviceStarted | 0x4000u);
    EXPECT_EQ(device.statusResult, 13u);
    std::map<std::string, std::vector<BYTE>> properties;
    for (const DeviceProperty& property : device.properties) {
        properties[std::to_string(property.type) + " " + KeyText(property.key)] = property.bytes;
    }
    const std::string set = GuidText(kDevicePropertySet);
    const std::map<std::string, std::vector<BYTE>> expected{
        {"18 " + set + " 9",
         {'K', 0, 'e', 0, 'y', 0, 'b', 0, 'o', 0, 'a', 0, 'r', 0, 'd', 0, 0, 0}},
        {"13 " + KeyText(kContainerIdKey),
         {0xB2, 0x55, 0x1E, 0x4D, 0x6F, 0xF1, 0xCF, 0x11, 0x88, 0xCB, 0, 0x11, 0x11, 0, 0, 0x30}},
        {"8210 " + set + " 3", {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}},
        {"25 " + KeyText(kNameKey), {1, 2, 3}},
        {"7 " + set + " 15", {255, 255, 255, 255}}};
    EXPECT_EQ(properties, expected);
    const DeviceInterface& offered = device.interfaces.at(0);
    EXPECT_EQ(GuidText(offered.interfaceClass), "{01020304-0506-0708-090A-0B0C0D0E0F10}");
    ASSERT_TRUE(offered.hid);
    EXPECT_EQ(offered.hid->product, L"T\u00E4");
    EXPECT_FALSE(offered.hid->manufacturer);
    EXPECT_EQ(offered.hid->openError, 5u);
}

TEST(MachineLoader, AddsWhatTheSystemSaysByItself) {
    const Machine machine = ParseMachine(R"({"devices": [
        {"id": "USB\\A", "properties": {
            "DeviceDesc": "D", "ContainerId": "{4d1e55b2-f16f-11cf-88cb-001111000030}"}},
        {"id": "HID\\B", "properties": {"Parent": "USB\\A", "DeviceDesc": "D", "FriendlyName": "F"},
         "interfaces": [{"class": "hid"}]},
        {"id": "C", "properties": {"Parent": "HID\\B", "Name": "N", "FriendlyName": "F"}},
        {"id": "D", "properties": {"DeviceDesc": "D", "Parent": "C", "Name": null}}]})",
                                         "");
    std::vector<std::string> names;
    for (const Device& device : machine.devices) {
        const DeviceProperty* const name = FindProperty(device.properties, kNameKey);
        names.push_back(name == nullptr ? "none"
                                        : std::string(1, static_cast<char>(name->bytes[0])));
        const DeviceProperty* const container = FindProperty(device.properties, kContainerIdKey);
        names.back() += container == nullptr ? "" : " " + std::to_string(container->bytes.at(15));
    }
    EXPECT_THAT(names, ::testing::ElementsAre("D 48", "F 48", "N 48", "none 48"));
    EXPECT_EQ(machine.devices[1].interfaces[0].path,
              L"\\\\?\\hid#b#{4d1e55b2-f16f-11cf-88cb-001111000030}");
}

// What the machines that come with the workbench leave out.
TEST(MachineLoader, ReadsWhatMayBeAbsent) {
    const Machine plain = ParseMachine("{}", "");
    EXPECT_EQ(plain.logons.consoleSession, kNoConsoleSession);
    EXPECT_EQ(plain.logons.hostAccount, L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(plain.suite.consent, "1");
    EXPECT_TRUE(plain.firmware);
    EXPECT_FALSE(plain.registry.biosReportTime);
    const Machine machine = ParseMachine(R"({
        "printers": [{"name": "", "driverName": null, "driver": {"manufacturer": null}}, {}],
        "display": {"topology": 16, "paths": [
            {"sourceAdapter": 4294967298}, {"targetAdapter": -1, "edid": null, "mode": null}]},
        "logons": {"consoleSession": null, "sessions": [{"id": 3, "tokenError": 1314}],
                   "accounts": {"A\\b": "S-1-5-21-1-2-3-4"}},
        "firmware": null, "suite": {"shelf": null, "ecLog": {"status": 2, "data": "0A FF"}},
        "registry": {"biosReportTime": 5000000000, "powerfulMode": null},
        "fileVersions": {"y": {"product": "1.0.0.65535"}}})",
                                         "");
    EXPECT_EQ(machine.printers.at(0).name, L"");
    EXPECT_FALSE(machine.printers[0].driverName);
    EXPECT_FALSE(machine.printers[0].driver->manufacturer);
    EXPECT_FALSE(machine.printers.at(1).driver);
    EXPECT_EQ(machine.display.topology, 16u);
    EXPECT_EQ(machine.display.paths.at(0).targetAdapter.LowPart, 2u);
    EXPECT_EQ(machine.display.paths[0].targetAdapter.HighPart, 1);
    EXPECT_EQ(machine.display.paths[0].mode->width, 1920u);
    EXPECT_EQ(machine.display.paths.at(1).targetAdapter.HighPart, -1);
    EXPECT_FALSE(machine.display.paths[1].edid);
    EXPECT_FALSE(machine.display.paths[1].mode);
    EXPECT_EQ(machine.logons.consoleSession, kNoConsoleSession);
    EXPECT_EQ(machine.logons.sessions.at(0).state, WTSActive);
    EXPECT_EQ(machine.logons.sessions[0].tokenError, 1314u);
    EXPECT_EQ(machine.logons.accounts,
              (std::map<std::wstring, std::wstring>{{L"A\\b", L"S-1-5-21-1-2-3-4"}}));
    EXPECT_FALSE(machine.firmware);
    EXPECT_FALSE(machine.suite.shelf);
    EXPECT_EQ(machine.suite.ecLog.dataSize, 2);
    EXPECT_EQ(machine.suite.ecLog.data, (std::vector<std::uint8_t>{0x0A, 0xFF}));
    EXPECT_EQ(machine.registry.biosReportTime, 5000000000);
    EXPECT_FALSE(machine.registry.powerfulMode);
    EXPECT_EQ(machine.fileVersions.at(L"y").file, (std::array<WORD, 4>{1, 0, 0, 65535}));
}

}  // namespace
}  // namespace simulation
