// What the loader says about each kind of defect of a machine file.
#include <gmock/gmock.h>

#include "simulation/machine_loader.h"

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
    EXPECT_EQ(ErrorOf(GetParam().document), GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Structure, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{"[]", "desk.json: the document: expected an object, found a list"},
        BrokenDocument{R"({"clocks": {"unixSeconds": 1e999}})",
                       "desk.json: not JSON: number overflow parsing '1e999'"},
        BrokenDocument{R"({"devices": [{"id": "A", "i\nd": 1}]})",
                       "desk.json: /devices/0: unknown key \"i<U+000A>d\"; did you mean \"id\"?"},
        BrokenDocument{R"({"devises": []})",
                       "desk.json: the document: unknown key \"devises\"; did you mean "
                       "\"devices\"?"},
        BrokenDocument{R"({"devices": {}})",
                       "desk.json: /devices: expected a list, found an object"},
        BrokenDocument{R"({"devices": [{}]})", "desk.json: /devices/0: the key \"id\" is missing"},
        BrokenDocument{R"({"devices": [{"id": "A"}, {"id": "B", "interface": []}]})",
                       "desk.json: /devices/1: unknown key \"interface\"; did you mean "
                       "\"interfaces\"?"},
        BrokenDocument{R"({"devices": [{"id": "A"}, {"id": "A"}]})",
                       "desk.json: /devices/1: a device with the same \"id\" comes before"},
        BrokenDocument{R"({"clocks": {"unixSeconds": 1, "unixSeconds": 2}})",
                       "desk.json: the key \"unixSeconds\" occurs twice in one object"},
        BrokenDocument{R"({"fileVersions": {"C:\\a/b~.exe": {"file": "1.2.3.4"}}})",
                       "desk.json: /fileVersions/C:\\a~1b~0.exe: the key \"product\" is missing"}));

INSTANTIATE_TEST_SUITE_P(
    Values, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{R"({"devices": [{"id": 7}]})",
                       "desk.json: /devices/0/id: expected a text, found 7"},
        BrokenDocument{R"({"devices": [{"id": "A\u0000B"}]})",
                       "desk.json: /devices/0/id: expected a text without U+0000, found "
                       "\"A\\u0000B\""},
        BrokenDocument{R"({"devices": [{"id": "A", "removable": 1}]})",
                       "desk.json: /devices/0/removable: expected true or false, found 1"},
        BrokenDocument{R"({"devices": [{"id": "A", "status": 4294967296}]})",
                       "desk.json: /devices/0/status: expected a whole number from 0 to "
                       "4294967295, found 4294967296"},
        BrokenDocument{R"({"devices": [{"id": "A", "problem": -1}]})",
                       "desk.json: /devices/0/problem: expected a whole number from 0 to "
                       "4294967295, found -1"},
        BrokenDocument{R"({"registry": {"popUpBlocking": 2147483648}})",
                       "desk.json: /registry/popUpBlocking: expected a whole number from "
                       "-2147483648 to 2147483647, found 2147483648"},
        BrokenDocument{R"({"registry": {"popUpBlocking": 1.5}})",
                       "desk.json: /registry/popUpBlocking: expected a whole number from "
                       "-2147483648 to 2147483647, found 1.5"},
        BrokenDocument{R"({"display": {"paths": [{"mode": "big"}]}})",
                       "desk.json: /display/paths/0/mode: expected an object, found \"big\""},
        BrokenDocument{R"({"display": {"topology": "mirror"}})",
                       "desk.json: /display/topology: expected one of \"internal\", \"clone\", "
                       "\"extend\", \"external\", found \"mirror\""},
        BrokenDocument{R"({"logons": {"sessions": [{"id": 1, "state": "asleep"}]}})",
                       "desk.json: /logons/sessions/0/state: expected one of \"active\", "
                       "\"connected\", \"connectQuery\", \"shadow\", \"disconnected\", \"idle\", "
                       "\"listen\", \"reset\", \"down\", \"init\", found \"asleep\""},
        BrokenDocument{R"({"suite": {"shelf": {"P": "x"}}})",
                       "desk.json: /suite/shelf/P: expected a list, found \"x\""},
        BrokenDocument{R"({"suite": {"ecLog": {"status": 256}}})",
                       "desk.json: /suite/ecLog/status: expected a whole number from 0 to 255, "
                       "found 256"},
        BrokenDocument{R"({"logons": {"accounts": {"A": "S-1-x"}}})",
                       "desk.json: /logons/accounts/A: expected a SID such as "
                       "\"S-1-5-21-1-2-3-1001\", found \"S-1-x\""},
        BrokenDocument{R"({"fileVersions": {"a": {"product": "1.2.3"}}})",
                       "desk.json: /fileVersions/a/product: expected four numbers up to 65535 "
                       "such as \"12.0.3.105\", found \"1.2.3\""},
        BrokenDocument{R"({"fileVersions": {"a": {"product": "1.2.3.65536"}}})",
                       "desk.json: /fileVersions/a/product: expected four numbers up to 65535 "
                       "such as \"12.0.3.105\", found \"1.2.3.65536\""},
        BrokenDocument{R"({"fileVersions": {"a": {"product": "1.2.3.4.5"}}})",
                       "desk.json: /fileVersions/a/product: expected four numbers up to 65535 "
                       "such as \"12.0.3.105\", found \"1.2.3.4.5\""}));

INSTANTIATE_TEST_SUITE_P(
    MissingKeys, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{R"({"devices": [{"id": "A", "interfaces": [{"path": "p"}]}]})",
                       "desk.json: /devices/0/interfaces/0: the key \"class\" is missing"},
        BrokenDocument{R"({"devices": [{"id": "A", "interfaces": [{"class": "usb"}]}]})",
                       "desk.json: /devices/0/interfaces/0: the key \"path\" is missing"},
        BrokenDocument{R"({"devices": [{"repeat": 2}]})",
                       "desk.json: /devices/0: the key \"devices\" is missing"},
        BrokenDocument{R"({"logons": {"sessions": [{"user": "A"}]}})",
                       "desk.json: /logons/sessions/0: the key \"id\" is missing"}));

// Each kind of object refuses a key that it does not know.
INSTANTIATE_TEST_SUITE_P(
    UnknownKeys, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{R"({"devices": [{"repeat": 1, "device": []}]})",
                       "desk.json: /devices/0: unknown key \"device\"; did you mean \"devices\"?"},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"Name": {"uint3": 1}}}]})",
                       "desk.json: /devices/0/properties/Name: unknown key \"uint3\"; did you mean "
                       "\"uint32\"?"},
        BrokenDocument{
            R"({"devices": [{"id": "A", "interfaces": [{"class": "hid", "paths": "p"}]}]})",
            "desk.json: /devices/0/interfaces/0: unknown key \"paths\"; did you mean \"path\"?"},
        BrokenDocument{
            R"({"devices": [{"id": "A", "interfaces": [{"class": "hid", "path": "p",
                "hid": {"maker": "x"}}]}]})",
            "desk.json: /devices/0/interfaces/0/hid: unknown key \"maker\"; known here "
            "are \"product\", \"manufacturer\", \"openError\""},
        BrokenDocument{R"({"printers": [{"drivername": "x"}]})",
                       "desk.json: /printers/0: unknown key \"drivername\"; did you mean "
                       "\"driverName\"?"},
        BrokenDocument{R"({"printers": [{"driver": {"hardwareID": "x"}}]})",
                       "desk.json: /printers/0/driver: unknown key \"hardwareID\"; did you mean "
                       "\"hardwareId\"?"},
        BrokenDocument{R"({"display": {"path": []}})",
                       "desk.json: /display: unknown key \"path\"; did you mean \"paths\"?"},
        BrokenDocument{R"({"display": {"paths": [{"edit": "00"}]}})",
                       "desk.json: /display/paths/0: unknown key \"edit\"; did you mean \"edid\"?"},
        BrokenDocument{R"({"display": {"paths": [{"mode": {"with": 1}}]}})",
                       "desk.json: /display/paths/0/mode: unknown key \"with\"; did you mean "
                       "\"width\"?"},
        BrokenDocument{R"({"logons": {"session": []}})",
                       "desk.json: /logons: unknown key \"session\"; did you mean \"sessions\"?"},
        BrokenDocument{
            R"({"logons": {"sessions": [{"id": 1, "users": "A"}]}})",
            "desk.json: /logons/sessions/0: unknown key \"users\"; did you mean \"user\"?"},
        BrokenDocument{R"({"firmware": {"biosversion": "x"}})",
                       "desk.json: /firmware: unknown key \"biosversion\"; did you mean "
                       "\"biosVersion\"?"},
        BrokenDocument{R"({"suite": {"consents": "1"}})",
                       "desk.json: /suite: unknown key \"consents\"; did you mean \"consent\"?"},
        BrokenDocument{R"({"suite": {"ecLog": {"date": "00"}}})",
                       "desk.json: /suite/ecLog: unknown key \"date\"; did you mean \"data\"?"},
        BrokenDocument{R"({"registry": {"popupBlocking": 1}})",
                       "desk.json: /registry: unknown key \"popupBlocking\"; did you mean "
                       "\"popUpBlocking\"?"},
        BrokenDocument{R"({"fileVersions": {"a": {"product": "1.2.3.4", "files": "1.2.3.4"}}})",
                       "desk.json: /fileVersions/a: unknown key \"files\"; did you mean \"file\"?"},
        BrokenDocument{R"({"clocks": {"unixseconds": 1}})",
                       "desk.json: /clocks: unknown key \"unixseconds\"; did you mean "
                       "\"unixSeconds\"?"}));

INSTANTIATE_TEST_SUITE_P(
    HexAndGuids, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{R"({"display": {"paths": [{"edid": "00 FF F"}]}})",
                       "desk.json: /display/paths/0/edid: expected pairs of hex digits, found "
                       "\"F\" at character 7"},
        BrokenDocument{R"({"display": {"paths": [{"edid": ["00", "0G"]}]}})",
                       "desk.json: /display/paths/0/edid/1: expected pairs of hex digits, found "
                       "\"0G\" at character 1"},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"ContainerId": "{0}"}}]})",
                       "desk.json: /devices/0/properties/ContainerId: expected a GUID such as "
                       "\"{4D1E55B2-F16F-11CF-88CB-001111000030}\", found \"{0}\""},
        BrokenDocument{
            R"({"devices": [{"id": "A", "properties": {"ContainerId":
                "{4D1E55B2+F16F-11CF-88CB-001111000030}"}}]})",
            "desk.json: /devices/0/properties/ContainerId: expected a GUID such as "
            "\"{4D1E55B2-F16F-11CF-88CB-001111000030}\", found "
            "\"{4D1E55B2+F16F-11CF-88CB-001111000030}\""},
        BrokenDocument{
            R"({"devices": [{"id": "A", "interfaces": [{"class": "usbb", "path": "p"}]}]})",
            "desk.json: /devices/0/interfaces/0/class: expected \"hid\", \"usb\", \"monitor\", "
            "\"disk\" or a GUID in braces, found \"usbb\""}));

INSTANTIATE_TEST_SUITE_P(
    Properties, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"Friendlyname": "x"}}]})",
                       "desk.json: /devices/0/properties: unknown key \"Friendlyname\"; did you "
                       "mean \"FriendlyName\"?"},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"{A45C254E}": {"uint32": 1}}}]})",
                       "desk.json: /devices/0/properties/{A45C254E}: expected a property key such "
                       "as \"{A45C254E-DF1C-4EFD-8020-67D146A850E0} 14\""},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"Name": {"type": 18}}}]})",
                       "desk.json: /devices/0/properties/Name: expected \"string\", \"strings\", "
                       "\"guid\", \"uint32\" or the pair \"type\" and \"hex\""},
        BrokenDocument{
            R"({"devices": [{"id": "A", "properties": {"Name": {"string": "", "uint32": 1}}}]})",
            "desk.json: /devices/0/properties/Name: expected \"string\", \"strings\", \"guid\", "
            "\"uint32\" or the pair \"type\" and \"hex\""},
        BrokenDocument{R"({"devices": [{"id": "A", "properties": {"HardwareIds": "x"}}]})",
                       "desk.json: /devices/0/properties/HardwareIds: expected a list, found "
                       "\"x\""}));

INSTANTIATE_TEST_SUITE_P(
    Groups, BrokenMachineFile,
    ::testing::Values(
        BrokenDocument{R"({"devices": [{"repeat": 2, "devices": [{"id": "A"}]}]})",
                       "desk.json: /devices/0/devices/0: a device with the same \"id\" comes "
                       "before"},
        BrokenDocument{R"({"devices": [{"repeat": 2, "devices": [{"id": "A${n:x}"}]}]})",
                       "desk.json: /devices/0/devices/0/id: expected ${n}, ${n:4} or ${n:4X}, "
                       "found \"${n:x}\""},
        BrokenDocument{R"({"devices": [{"repeat": 2, "devices": [{"id": "A${n"}]}]})",
                       "desk.json: /devices/0/devices/0/id: \"${n\" without its \"}\""},
        BrokenDocument{R"({"devices": [{"repeat": -2, "devices": []}]})",
                       "desk.json: /devices/0/repeat: expected a whole number from 0 to 65535, "
                       "found -2"}));

TEST(BrokenMachine, LocatesWhatIsNotJson) {
    EXPECT_THAT(ErrorOf("{\n  \"devices\": [,]\n}"),
                ::testing::StartsWith(
                    "desk.json: not JSON: parse error at line 2, column 15: syntax error"));
}

TEST(BrokenMachine, RefusesMoreThan253BytesOfEcLog) {
    EXPECT_EQ(ErrorOf(R"({"suite": {"ecLog": {"data": ")" + std::string(508, '0') + "\"}}}"),
              "desk.json: /suite/ecLog/data: expected at most 253 bytes, found 254");
}

TEST(BrokenMachine, CutsLongTextsInComplaints) {
    EXPECT_EQ(ErrorOf(R"({"devices": [{"id": "A", "present": ")" + std::string(500, 'x') + "\"}]}"),
              "desk.json: /devices/0/present: expected true or false, found \"" +
                  std::string(59, 'x') + "...");
}

}  // namespace
}  // namespace simulation
