#include "simulation/machine_loader.h"

#include <gmock/gmock.h>

#include "simulation/call_text.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

TEST(MachineLoader, NamesAFileThatCannotBeOpened) {
    try {
        LoadMachine("no_such_folder\\machine.json");
        FAIL() << "a file that does not exist was loaded";
    } catch (const MachineFileError& error) {
        EXPECT_STREQ(error.what(), "no_such_folder\\machine.json: the file cannot be opened");
    }
}

TEST(MachineLoader, MakesAnEmptyObjectADefaultMachine) {
    const Machine machine = ParseMachine("{}", "");
    EXPECT_TRUE(machine.devices.empty());
    EXPECT_EQ(machine.logons.consoleSession, kNoConsoleSession);
    EXPECT_EQ(machine.logons.hostAccount, L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(machine.suite.consent, "1");
    EXPECT_TRUE(machine.firmware);
    EXPECT_FALSE(machine.clocks.unixSeconds);
}

TEST(MachineLoader, ReadsDevices) {
    const Machine machine = ParseMachine(R"({"devices": [{
        "id": "HID\\VID_1&Col01", "removable": true, "present": false, "problem": 28,
        "statusResult": 13,
        "properties": {
            "Class": "Keyboard",
            "ContainerId": "{4d1e55b2-f16f-11cf-88cb-001111000030}",
            "HardwareIds": ["a", "b"],
            "Name": {"type": 25, "hex": ["01 02", "03"]},
            "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 15": {"uint32": 4294967295}},
        "interfaces": [
            {"class": "hid", "path": "\\\\?\\hid#1",
             "hid": {"product": "T\u00e4", "manufacturer": null, "openError": 5}},
            {"class": "{01020304-0506-0708-090A-0B0C0D0E0F10}", "path": "p"}]}]})",
                                         "");
    ASSERT_EQ(machine.devices.size(), 1u);
    const Device& device = machine.devices[0];
    EXPECT_EQ(device.instanceId, L"HID\\VID_1&Col01");
    EXPECT_FALSE(device.present);
    EXPECT_EQ(device.status, kDeviceStarted | 0x4000u);
    EXPECT_EQ(device.problem, 28u);
    EXPECT_EQ(device.statusResult, 13u);

    ASSERT_EQ(device.properties.size(), 5u);
    const auto property = [&](const DEVPROPKEY& key) -> const DeviceProperty& {
        for (const DeviceProperty& candidate : device.properties) {
            if (SameKey(candidate.key, key)) {
                return candidate;
            }
        }
        throw std::runtime_error("no property " + KeyText(key));
    };
    EXPECT_EQ(property(kClassKey).bytes, DeviceProperty::String(kClassKey, L"Keyboard").bytes);
    EXPECT_EQ(property(kContainerIdKey).bytes,
              DeviceProperty::Guid(kContainerIdKey, kHidInterface).bytes);
    EXPECT_EQ(property(kHardwareIdsKey).bytes,
              DeviceProperty::StringList(kHardwareIdsKey, {L"a", L"b"}).bytes);
    EXPECT_EQ(property(kNameKey).type, 25u);
    EXPECT_EQ(property(kNameKey).bytes, (std::vector<BYTE>{1, 2, 3}));
    EXPECT_EQ(property(DEVPROPKEY{kDevicePropertySet, 15}).bytes,
              (std::vector<BYTE>{255, 255, 255, 255}));

    ASSERT_EQ(device.interfaces.size(), 2u);
    EXPECT_EQ(GuidText(device.interfaces[0].interfaceClass), GuidText(kHidInterface));
    ASSERT_TRUE(device.interfaces[0].hid);
    EXPECT_EQ(device.interfaces[0].hid->product, L"T\u00E4");
    EXPECT_FALSE(device.interfaces[0].hid->manufacturer);
    EXPECT_EQ(device.interfaces[0].hid->openError, 5u);
    EXPECT_EQ(GuidText(device.interfaces[1].interfaceClass),
              "{01020304-0506-0708-090A-0B0C0D0E0F10}");
    EXPECT_FALSE(device.interfaces[1].hid);
}

TEST(MachineLoader, RepeatsGroupsWithARunningNumber) {
    const Machine machine = ParseMachine(R"({"devices": [{"id": "FIRST ${n}"},
        {"repeat": 11, "devices": [
            {"id": "A${n}", "properties": {"Name": "no. ${n:3}"}},
            {"id": "B${n:2X}-${n:2}"}]}]})",
                                         "");
    ASSERT_EQ(machine.devices.size(), 23u);
    EXPECT_EQ(machine.devices[0].instanceId, L"FIRST ${n}");
    EXPECT_EQ(machine.devices[1].instanceId, L"A1");
    EXPECT_EQ(machine.devices[1].properties[0].bytes,
              DeviceProperty::String(kNameKey, L"no. 001").bytes);
    EXPECT_EQ(machine.devices[22].instanceId, L"B0B-11");
}

TEST(MachineLoader, ReadsPrintersWithAndWithoutTexts) {
    const Machine machine = ParseMachine(R"({"printers": [
        {"name": "P", "driverName": "D", "dataType": "RAW", "portName": "USB001",
         "driver": {"manufacturer": "M", "hardwareId": "H"}},
        {"name": "", "driverName": null, "driver": {"manufacturer": null}}, {}]})",
                                         "");
    ASSERT_EQ(machine.printers.size(), 3u);
    EXPECT_EQ(machine.printers[0].portName, L"USB001");
    EXPECT_EQ(machine.printers[0].driver->hardwareId, L"H");
    EXPECT_EQ(machine.printers[1].name, L"");
    EXPECT_FALSE(machine.printers[1].driverName);
    ASSERT_TRUE(machine.printers[1].driver);
    EXPECT_FALSE(machine.printers[1].driver->manufacturer);
    EXPECT_FALSE(machine.printers[2].driver);
}

TEST(MachineLoader, ReadsTheDisplay) {
    const Machine machine = ParseMachine(R"({"display": {"topology": "extend", "paths": [
        {"sourceAdapter": 4294967298, "sourceId": 3, "targetId": 4, "gdiName": "g",
         "friendlyName": "f", "devicePath": "d", "edid": "00ff"},
        {"sourceAdapter": 5, "targetAdapter": -1, "edid": null, "mode": null},
        {"mode": {"width": 640, "height": 480, "frequency": 75, "logPixels": 120,
                  "bitsPerPixel": 16}}]}})",
                                         "");
    EXPECT_EQ(machine.display.topology, 4u);
    ASSERT_EQ(machine.display.paths.size(), 3u);
    const DisplayPath& first = machine.display.paths[0];
    EXPECT_EQ(first.sourceAdapter.LowPart, 2u);
    EXPECT_EQ(first.sourceAdapter.HighPart, 1);
    EXPECT_EQ(first.targetAdapter.LowPart, 2u);
    EXPECT_EQ(first.sourceId, 3u);
    EXPECT_EQ(first.targetId, 4u);
    EXPECT_EQ(first.gdiName, L"g");
    EXPECT_EQ(first.friendlyName, L"f");
    EXPECT_EQ(first.devicePath, L"d");
    EXPECT_EQ(first.edid, (std::vector<BYTE>{0, 255}));
    EXPECT_EQ(first.mode->width, 1920u);
    const DisplayPath& second = machine.display.paths[1];
    EXPECT_EQ(second.targetAdapter.LowPart, 0xFFFFFFFFu);
    EXPECT_EQ(second.targetAdapter.HighPart, -1);
    EXPECT_FALSE(second.edid);
    EXPECT_FALSE(second.mode);
    const DisplayMode& mode = *machine.display.paths[2].mode;
    EXPECT_EQ(mode.width, 640u);
    EXPECT_EQ(mode.height, 480u);
    EXPECT_EQ(mode.frequency, 75u);
    EXPECT_EQ(mode.logPixels, 120u);
    EXPECT_EQ(mode.bitsPerPixel, 16u);
    EXPECT_EQ(ParseMachine(R"({"display": {"topology": 16}})", "").display.topology, 16u);
}

TEST(MachineLoader, ReadsLogons) {
    const Logons logons = ParseMachine(R"({"logons": {"consoleSession": 2, "hostAccount": "",
        "sessions": [{"id": 2, "user": "A\\b", "state": "disconnected", "tokenError": 1314},
                     {"id": 3}],
        "accounts": {"A\\b": "S-1-5-21-1-2-3-4"}}})",
                                       "")
                              .logons;
    EXPECT_EQ(logons.consoleSession, 2u);
    EXPECT_EQ(logons.hostAccount, L"");
    ASSERT_EQ(logons.sessions.size(), 2u);
    EXPECT_EQ(logons.sessions[0].userName, L"A\\b");
    EXPECT_EQ(logons.sessions[0].state, WTSDisconnected);
    EXPECT_EQ(logons.sessions[0].tokenError, 1314u);
    EXPECT_EQ(logons.sessions[1].state, WTSActive);
    EXPECT_EQ(logons.accounts,
              (std::map<std::wstring, std::wstring>{{L"A\\b", L"S-1-5-21-1-2-3-4"}}));
    EXPECT_EQ(ParseMachine(R"({"logons": {"consoleSession": null}})", "").logons.consoleSession,
              kNoConsoleSession);
}

TEST(MachineLoader, ReadsFirmwareSuiteAndTheRest) {
    const Machine machine = ParseMachine(R"({"description": "d", "firmware":
        {"boardProduct": "b", "oemProduct": "o", "biosVersion": "v"},
        "suite": {"consent": "0", "features": {"F": 3, "G": -1},
            "shelf": {"P": ["x", "y"]}, "firmwareStartResult": -5,
            "ecLog": {"callResult": 4, "status": 2, "data": "0A FF"}},
        "registry": {"biosReportTime": 5000000000, "reportDevicesCount": 9, "popUpBlocking": 1,
            "powerfulMode": null},
        "fileVersions": {"C:\\x.exe": {"product": "1.2.3.65535", "file": "5.6.7.8"},
                         "y": {"product": "1.0.0.0"}},
        "clocks": {"unixSeconds": 1700000000, "steadyNanoseconds": 5}})",
                                         "");
    EXPECT_EQ(machine.description, "d");
    ASSERT_TRUE(machine.firmware);
    EXPECT_EQ(machine.firmware->boardProduct, L"b");
    EXPECT_EQ(machine.firmware->oemProduct, L"o");
    EXPECT_EQ(machine.firmware->biosVersion, L"v");
    EXPECT_EQ(machine.suite.consent, "0");
    EXPECT_EQ(machine.suite.features, (std::map<std::string, int>{{"F", 3}, {"G", -1}}));
    EXPECT_EQ(machine.suite.shelf,
              (std::multimap<std::string, std::string>{{"P", "x"}, {"P", "y"}}));
    EXPECT_EQ(machine.suite.firmwareStartResult, -5);
    EXPECT_EQ(machine.suite.ecLog.callResult, 4);
    EXPECT_EQ(machine.suite.ecLog.status, 2);
    EXPECT_EQ(machine.suite.ecLog.dataSize, 2);
    EXPECT_EQ(machine.suite.ecLog.data, (std::vector<std::uint8_t>{0x0A, 0xFF}));
    EXPECT_EQ(machine.registry.biosReportTime, 5000000000);
    EXPECT_EQ(machine.registry.reportDevicesCount, 9);
    EXPECT_EQ(machine.registry.popUpBlocking, 1);
    EXPECT_FALSE(machine.registry.powerfulMode);
    EXPECT_EQ(machine.fileVersions.at(L"C:\\x.exe").product, (std::array<WORD, 4>{1, 2, 3, 65535}));
    EXPECT_EQ(machine.fileVersions.at(L"C:\\x.exe").file, (std::array<WORD, 4>{5, 6, 7, 8}));
    EXPECT_EQ(machine.fileVersions.at(L"y").file, (std::array<WORD, 4>{1, 0, 0, 0}));
    EXPECT_EQ(machine.clocks.unixSeconds, 1700000000);
    EXPECT_EQ(machine.clocks.steadyNanoseconds, 5);
    EXPECT_FALSE(ParseMachine(R"({"firmware": null})", "").firmware);
    EXPECT_FALSE(ParseMachine(R"({"suite": {"shelf": null}})", "").suite.shelf);
}

}  // namespace
}  // namespace simulation
