// Monitors as the display configuration and the registry describe them, with names that fill their
// fields to the end.
#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "device_reporter/display_info.h"
#include "fuzz/campaign.h"
#include "fuzz/sources/simulated_system.h"
#include "fuzz/texts.h"

namespace {

using DeviceReporter::DisplayInfo;
using fuzz::RequireSame;
using simulation::DisplayPath;

constexpr std::size_t kSourceUnits = 32;
constexpr std::size_t kNameUnits = 64;
constexpr std::size_t kPathUnits = 128;
constexpr std::size_t kLeastEdid = 10;
// In digits.
constexpr std::size_t kMaskBegin = 24;
constexpr std::size_t kMaskEnd = 28;

struct Displays {
    simulation::Machine machine;
    // Which of the registry's calls fail, counted from 1; 0 for none.
    unsigned failingOpen = 0;
    unsigned failingRead = 0;  ///< Each monitor is read twice.
};

void PrintTo(const Displays& displays, std::ostream* stream) {
    *stream << "topology " << displays.machine.display.topology << ", texts "
            << (displays.machine.lies.unterminatedTexts ? "without" : "with") << " terminator";
    *stream << ", failing: open " << displays.failingOpen << ", read " << displays.failingRead;
    for (const DisplayPath& monitor : displays.machine.display.paths) {
        *stream << "\n    source " << testing::PrintToString(monitor.gdiName) << ", name "
                << testing::PrintToString(monitor.friendlyName) << ", path "
                << testing::PrintToString(monitor.devicePath) << ", EDID "
                << testing::PrintToString(*monitor.edid);
        if (monitor.mode) {
            *stream << ", width " << monitor.mode->width << ", bits per pixel "
                    << monitor.mode->bitsPerPixel;
        }
    }
}

/// `spared` units of each field are left for its terminator.
DisplayPath MakeMonitor(fuzz::Random& random, UINT32 number, std::size_t spared) {
    DisplayPath monitor;
    monitor.sourceId = monitor.targetId = number;
    // Sources and paths differ: two with one name are one source.
    monitor.gdiName = std::to_wstring(number) + fuzz::MakeText(random, kSourceUnits - spared - 1);
    monitor.friendlyName = fuzz::MakeText(random, kNameUnits - spared);
    monitor.devicePath =
        L"\\\\?\\DISPLAY#ABC1234#5&2a3b&0&UID" + std::to_wstring(number) + L"#{e6f07b5f}";
    if (random.OneIn(4)) {
        monitor.devicePath.resize(kPathUnits - spared, L'x');
    } else if (random.OneIn(8)) {
        monitor.devicePath = fuzz::MakeText(random, kPathUnits - spared);
    }
    const std::string edid = fuzz::MakeBytes(random, random.Between(kLeastEdid, 256));
    monitor.edid.emplace(edid.begin(), edid.end());
    if (!random.OneIn(8)) {
        (*monitor.edid)[8] = 0x10;
        (*monitor.edid)[9] = 0xAC;
    }
    monitor.mode->width = static_cast<DWORD>(random.Bits());
    monitor.mode->bitsPerPixel = static_cast<DWORD>(random.Bits());
    if (random.OneIn(32)) {
        monitor.mode.reset();
    }
    return monitor;
}

Displays MakeDisplays(fuzz::Random& random) {
    Displays displays;
    simulation::Machine& machine = displays.machine;
    machine.lies.unterminatedTexts = random.OneIn(2);
    const auto monitors = static_cast<UINT32>(random.Between(1, 3));
    for (UINT32 number = 0; number < monitors; ++number) {
        machine.display.paths.push_back(
            MakeMonitor(random, number, machine.lies.unterminatedTexts ? 0 : 1));
    }
    machine.display.topology = static_cast<UINT32>(random.Below(20));
    if (random.OneIn(16)) {
        displays.failingOpen = static_cast<unsigned>(random.Between(1, monitors));
    } else if (random.OneIn(16)) {
        displays.failingRead = static_cast<unsigned>(random.Between(1, 2 * monitors));
    }
    return displays;
}

std::wstring UpToNul(const std::wstring& text) { return text.substr(0, text.find(L'\0')); }

bool IsLetterCode(unsigned code) { return code >= 1 && code <= 26; }

bool IsDescribed(const Displays& displays, std::size_t index) {
    const DisplayPath& monitor = displays.machine.display.paths[index];
    const std::wstring path = UpToNul(monitor.devicePath);
    const std::size_t begin = path.find(L"DISPLAY");
    const bool hasKey =
        begin != std::wstring::npos &&
        std::count(path.begin() + static_cast<std::ptrdiff_t>(begin), path.end(), L'#') >= 3;
    const unsigned code = (*monitor.edid)[8] * 256u + (*monitor.edid)[9];
    return hasKey && displays.failingOpen != index + 1 &&
           (displays.failingRead + 1) / 2 != index + 1 && monitor.mode && IsLetterCode(code & 31) &&
           IsLetterCode(code >> 5 & 31) && IsLetterCode(code >> 10 & 31);
}

void CheckMonitor(const DisplayInfo& info, const DisplayPath& monitor) {
    RequireSame(info.sourceName, UpToNul(monitor.gdiName), "the source ends with its field");
    RequireSame(info.monitorName, UpToNul(monitor.friendlyName), "the name ends with its field");
    RequireSame(info.monitorDevicePath, UpToNul(monitor.devicePath),
                "the path ends with its field");
    RequireSame(info.edidHex.size(), monitor.edid->size() * 2, "the whole EDID is read");
    for (std::size_t digit = kMaskBegin; digit < std::min(kMaskEnd, info.edidHex.size()); ++digit) {
        RequireSame(info.edidHex[digit], L'0', "bytes 12 and 13 are blanked");
    }
    RequireSame(info.width, monitor.mode->width & 0xFFFF, "the width's low half is kept");
    RequireSame(info.colorDepth, monitor.mode->bitsPerPixel >> 2 & 0xFFFF,
                "the depth is a quarter of the bits");
}

void CheckDisplays(const Displays& displays) {
    const std::vector<DisplayPath>& monitors = displays.machine.display.paths;
    simulation::World& world = fuzz_sources::RunOn(displays.machine);
    if (displays.failingOpen != 0) {
        world.faults.FailCall("RegOpenKeyExA", displays.failingOpen, ERROR_FILE_NOT_FOUND);
    }
    if (displays.failingRead != 0) {
        world.faults.FailCall("RegQueryValueExA", displays.failingRead, ERROR_FILE_NOT_FOUND);
    }
    std::vector<DisplayInfo> infos;
    const bool all = DeviceReporter::GetDisplayInfo(infos);
    std::size_t good = 0;
    while (good < monitors.size() && IsDescribed(displays, good)) {
        ++good;
    }
    RequireSame(all, good == monitors.size(), "one bad monitor ends the query");
    RequireSame(infos.size(), good, "the monitors before a bad one are told");
    for (std::size_t i = 0; i < infos.size(); ++i) {
        CheckMonitor(infos[i], monitors[i]);
        RequireSame(infos[i].isFirstPath, i == 0, "the first path is marked");
        RequireSame(infos[i].displayMode, infos[0].displayMode, "all have the same topology");
    }
    fuzz_sources::RequireAllReturned(world);
}

TEST(DisplayFuzz, DescribesMonitorsUpToTheFirstBadOne) {
    fuzz::TryInputs("display configurations", 200000, MakeDisplays, CheckDisplays);
}

}  // namespace
