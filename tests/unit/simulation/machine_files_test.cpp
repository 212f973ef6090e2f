// The machine files that come with the workbench.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

#include "simulation/call_text.h"
#include "simulation/fakes/common.h"
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

std::wstring ParentOf(const Device& device) {
    const DeviceProperty* const parent = FindProperty(device.properties, kParentKey);
    return parent == nullptr ? L"" : reinterpret_cast<const wchar_t*>(parent->bytes.data());
}

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
        const std::vector<Device> devices = LoadMachine(file).devices;
        for (const Device& device : devices) {
            const std::wstring parent = ParentOf(device);
            const bool found = std::any_of(
                devices.begin(), devices.end(),
                [&](const Device& other) { return SameName(other.instanceId, parent); });
            EXPECT_TRUE(parent.empty() || found)
                << file.filename() << ": " << ToUtf8(device.instanceId) << " has no parent "
                << ToUtf8(parent);
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

}  // namespace
}  // namespace simulation
