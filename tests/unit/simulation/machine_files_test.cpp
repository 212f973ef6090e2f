// The machine files that come with the workbench.
#include <gmock/gmock.h>

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <numeric>

#include "simulation/call_text.h"
#include "simulation/machine_loader.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

const std::filesystem::path kFolder = MACHINE_FOLDER;

std::vector<std::filesystem::path> MachineFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
        if (entry.path().filename() != "machine.schema.json") {
            files.push_back(entry.path());
        }
    }
    return files;
}

const DeviceProperty* Find(const Device& device, const DEVPROPKEY& key) {
    const auto found =
        std::find_if(device.properties.begin(), device.properties.end(),
                     [&](const DeviceProperty& property) { return SameKey(property.key, key); });
    return found == device.properties.end() ? nullptr : &*found;
}

std::wstring TextOf(const Device& device, const DEVPROPKEY& key) {
    const DeviceProperty* const property = Find(device, key);
    return property == nullptr ? std::wstring()
                               : reinterpret_cast<const wchar_t*>(property->bytes.data());
}

std::wstring Upper(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), [](wchar_t letter) {
        return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A')
                                                : letter;
    });
    return text;
}

Machine OfficeLaptop() { return LoadMachine(kFolder / "office_laptop_with_dock.json"); }

TEST(MachineFiles, AreThereAndLoad) {
    std::vector<std::string> names;
    for (const std::filesystem::path& file : MachineFiles()) {
        EXPECT_NO_THROW(LoadMachine(file));
        names.push_back(file.filename().string());
    }
    EXPECT_THAT(names, ::testing::IsSupersetOf({"bare_desktop.json", "office_laptop_with_dock.json",
                                                "workstation_600_devices.json"}));
}

TEST(MachineFiles, NameParentsThatExist) {
    for (const std::filesystem::path& file : MachineFiles()) {
        const Machine machine = LoadMachine(file);
        std::vector<std::wstring> ids;
        for (const Device& device : machine.devices) {
            ids.push_back(Upper(device.instanceId));
        }
        for (const Device& device : machine.devices) {
            const std::wstring parent = Upper(TextOf(device, kParentKey));
            EXPECT_TRUE(parent.empty() || std::find(ids.begin(), ids.end(), parent) != ids.end())
                << file.filename() << ": " << ToUtf8(device.instanceId) << " has no parent "
                << ToUtf8(parent);
        }
    }
}

TEST(MachineFiles, NameInterfacesAfterTheirDevice) {
    for (const std::filesystem::path& file : MachineFiles()) {
        for (const Device& device : LoadMachine(file).devices) {
            std::wstring id = Upper(device.instanceId);
            std::replace(id.begin(), id.end(), L'\\', L'#');
            for (const DeviceInterface& item : device.interfaces) {
                const std::wstring expected =
                    L"\\\\?\\" + id + L"#" + FromUtf8(GuidText(item.interfaceClass));
                EXPECT_EQ(ToUtf8(Upper(item.path)), ToUtf8(expected)) << file.filename();
            }
        }
    }
}

TEST(MachineFiles, HoldCompleteEdids) {
    const std::vector<BYTE> header{0, 255, 255, 255, 255, 255, 255, 0};
    for (const std::filesystem::path& file : MachineFiles()) {
        for (const DisplayPath& path : LoadMachine(file).display.paths) {
            ASSERT_TRUE(path.edid) << file.filename();
            const std::vector<BYTE>& edid = *path.edid;
            ASSERT_GE(edid.size(), 128u);
            EXPECT_TRUE(std::equal(header.begin(), header.end(), edid.begin()));
            EXPECT_EQ(edid.size(), 128u * (1u + edid[126])) << "number of extension blocks";
            for (auto block = edid.begin(); block != edid.end(); block += 128) {
                EXPECT_EQ(std::accumulate(block, block + 128, 0u) % 256, 0u)
                    << file.filename() << ": checksum of the block at " << block - edid.begin();
            }
        }
    }
}

TEST(MachineFiles, AgreeWithTheirEdidsOnMakerAndProduct) {
    for (const std::filesystem::path& file : MachineFiles()) {
        for (const DisplayPath& path : LoadMachine(file).display.paths) {
            const std::vector<BYTE>& edid = *path.edid;
            const unsigned letters = edid[8] * 256u + edid[9];
            std::wstring model;
            for (const unsigned shift : {10u, 5u, 0u}) {
                model += static_cast<wchar_t>(L'A' - 1 + (letters >> shift & 31));
            }
            wchar_t product[5];
            swprintf(product, 5, L"%04X", edid[10] + edid[11] * 256u);
            EXPECT_NE(path.devicePath.find(L"DISPLAY#" + model + product + L"#"),
                      std::wstring::npos)
                << file.filename() << ": " << ToUtf8(path.devicePath);
        }
    }
}

TEST(OfficeLaptop, HasWhatMakesInventoriesDifficult) {
    const Machine machine = OfficeLaptop();
    const auto countIds = [&](const wchar_t* part) {
        return std::count_if(machine.devices.begin(), machine.devices.end(),
                             [&](const Device& device) {
                                 return Upper(device.instanceId).find(part) != std::wstring::npos;
                             });
    };
    EXPECT_GE(countIds(L"&MI_0"), 5);
    EXPECT_GE(countIds(L"HID\\VID_3A5C&PID_1101&MI_01&COL0"), 3);
    EXPECT_GE(countIds(L"_VID&0002"), 3);
    EXPECT_GE(countIds(L"DEV_VID&02"), 1);
    EXPECT_GE(countIds(L"PCI\\VEN_"), 4);
    EXPECT_TRUE(std::any_of(
        machine.devices.begin(), machine.devices.end(),
        [](const Device& device) { return TextOf(device, kFriendlyNameKey).size() > 200; }));
    EXPECT_TRUE(std::any_of(machine.devices.begin(), machine.devices.end(),
                            [](const Device& device) { return !device.present; }));

    ASSERT_EQ(machine.display.paths.size(), 2u);
    EXPECT_EQ(machine.display.topology, 4u);
    EXPECT_EQ(machine.display.paths[0].edid->size(), 128u);
    EXPECT_EQ(machine.display.paths[1].edid->size(), 256u);
}

TEST(OfficeLaptop, SharesTheDocksContainerWithRemovableDevices) {
    std::size_t removable = 0;
    std::size_t fixed = 0;
    std::vector<BYTE> dock;
    for (const Device& device : OfficeLaptop().devices) {
        if (device.instanceId.find(L"VID_1D5C") == std::wstring::npos) {
            continue;
        }
        const DeviceProperty* const container = Find(device, kContainerIdKey);
        ASSERT_NE(container, nullptr) << ToUtf8(device.instanceId);
        if (dock.empty()) {
            dock = container->bytes;
        }
        EXPECT_EQ(container->bytes, dock) << ToUtf8(device.instanceId);
        ++((device.status & kDeviceRemovable) != 0 ? removable : fixed);
    }
    EXPECT_GE(removable, 2u);
    EXPECT_GE(fixed, 2u);
}

TEST(OfficeLaptop, HasPrintersOfEveryKind) {
    const std::vector<Printer> printers = OfficeLaptop().printers;
    const auto any = [&](auto condition) {
        return std::any_of(printers.begin(), printers.end(), condition);
    };
    EXPECT_TRUE(any([](const Printer& printer) { return printer.portName == L"USB001"; }));
    EXPECT_TRUE(any([](const Printer& printer) { return printer.portName == L"PORTPROMPT:"; }));
    EXPECT_TRUE(
        any([](const Printer& printer) { return printer.portName->rfind(L"IP_", 0) == 0; }));
    EXPECT_TRUE(any([](const Printer& printer) { return !printer.driver; }));
    EXPECT_TRUE(any([](const Printer& printer) { return printer.name->size() > 200; }));
    EXPECT_TRUE(any([](const Printer& printer) {
        return std::any_of(printer.name->begin(), printer.name->end(),
                           [](wchar_t letter) { return letter > 0x3000; });
    }));
}

TEST(Workstation, Has600Devices) {
    EXPECT_EQ(LoadMachine(kFolder / "workstation_600_devices.json").devices.size(), 600u);
}

TEST(BareDesktop, HasNeitherPrinterNorUser) {
    const Machine machine = LoadMachine(kFolder / "bare_desktop.json");
    EXPECT_TRUE(machine.printers.empty());
    for (const Session& session : machine.logons.sessions) {
        EXPECT_TRUE(session.userName.empty());
    }
}

}  // namespace
}  // namespace simulation
