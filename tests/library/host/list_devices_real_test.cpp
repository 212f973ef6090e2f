// --list-devices on this computer, compared with what a plain walk over its devices finds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <regex>

#include "host/kept_state.h"
#include "library/device_sources/installed_printers.h"
#include "library/device_sources/plain_walk.h"
#include "library/device_sources/registered_devices.h"
#include "library/device_sources/stored_edid.h"
#include "library/host/host_program.h"
#include "simulation/well_known.h"
#include "standins/common/text.h"

namespace host_test {
namespace {

using DeviceReporter::DeviceInfo;
using standins::ToUtf8;
using test_support::ChildResult;
using testing::Contains;
using testing::ElementsAre;

using Row = std::vector<std::string>;

/// The rows below a title, without their heading.
std::vector<Row> RowsOf(const std::string& output, const std::string& title) {
    static const std::regex kGap("  +");
    std::vector<Row> rows;
    bool inside = false;
    for (const std::string& line : LinesOf(output)) {
        if (line.compare(0, 4, "    ") != 0) {
            inside = line.compare(0, title.size(), title) == 0 || (inside && !line.empty());
        } else if (inside) {
            const std::string cells = line.substr(4);
            rows.emplace_back(std::sregex_token_iterator(cells.begin(), cells.end(), kGap, -1),
                              std::sregex_token_iterator());
        }
    }
    if (!rows.empty()) {
        rows.erase(rows.begin());
    }
    return rows;
}

std::string Cell(const std::wstring& text) {
    return text.empty() ? "-" : std::regex_replace(ToUtf8(text), std::regex("\n"), " / ");
}

/// A device that nothing marks as removable, as are all in Wine, is in no list.
Row UnreportedRow(const DeviceInfo& device) {
    std::string why = "container";
    if (device.className.empty() || device.className.find(L"System") != std::wstring::npos) {
        why += ", class";
    }
    if (device.vendorId.empty()) {
        why += ", vendor id";
    }
    return {why,
            Cell(device.className),
            Cell(device.name),
            Cell(device.description),
            Cell(device.manufacturer),
            Cell(device.vendorId),
            "no",
            Cell(device.containerId),
            Cell(device.instanceId)};
}

class ListDevicesHere : public testing::Test {
protected:
    void SetUp() override {
        if (!real_devices::RunsInWine()) {
            GTEST_SKIP() << real_devices::kOnlyInWine;
        }
    }
};

TEST_F(ListDevicesHere, ShowsWhatAPlainWalkFinds) {
    const real_devices::RegisteredDevices registered(real_devices::SampleInventory());
    const ChildResult result = RunHost({L"--list-devices"});
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_EQ(result.errors, "");

    std::vector<DeviceInfo> expected;
    for (const std::wstring& id : plain_walk::InstanceIds()) {
        expected.push_back(plain_walk::Describe(id));
    }
    std::map<std::string, DeviceInfo> asked;
    std::ptrdiff_t closed = 0;
    for (const auto& offered : plain_walk::Interfaces(simulation::kHidInterface)) {
        DeviceInfo device = plain_walk::Describe(offered.deviceId);
        closed += plain_walk::AskHidDevice(offered.path, device) != ERROR_SUCCESS ? 1 : 0;
        asked.emplace(ToUtf8(offered.deviceId), device);
    }

    const std::vector<Row> rows = RowsOf(result.output, "Not reported");
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        Row row = UnreportedRow(expected[i]);
        // Wine does not answer every query for a HID string on a handle that was opened for
        // overlapped access; the texts of the device node stay then.
        if (const auto hid = asked.find(row.back()); hid != asked.end()) {
            EXPECT_THAT((Row{row[2], Cell(hid->second.name)}), Contains(rows[i].at(2)));
            EXPECT_THAT((Row{row[4], Cell(hid->second.manufacturer)}), Contains(rows[i].at(4)));
            row[2] = rows[i].at(2);
            row[4] = rows[i].at(4);
        }
        EXPECT_EQ(rows[i], row);
    }
    const auto log = ShownLines(result.output, "log");
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const std::string& line) {
                                return line.compare(0, 18, "create file failed") == 0;
                            }),
              closed);
    EXPECT_GE(closed, 20);
}

TEST_F(ListDevicesHere, ShowsPrinters) {
    const real_devices::InstalledPrinters installed({{L"Tally B\u00FCro", L"PORTPROMPT:", L"RAW"}});
    const ChildResult result = RunHost({L"--list-devices"});
    const std::vector<Row> rows = RowsOf(result.output, "PrinterList");
    const auto ours = std::find_if(rows.begin(), rows.end(), [](const Row& row) {
        return row.at(1) == ToUtf8(L"Tally B\u00FCro");
    });
    ASSERT_NE(ours, rows.end()) << result.output;
    EXPECT_EQ(ours->at(0), "Printer");
    EXPECT_EQ(ours->at(2), ToUtf8(real_devices::kDriverName));
    EXPECT_EQ(ours->at(4), "RAW / PORTPROM");
}

TEST_F(ListDevicesHere, ShowsTheMonitor) {
    DISPLAY_DEVICEW adapter{};
    adapter.cb = sizeof(adapter);
    DISPLAY_DEVICEW monitor{};
    monitor.cb = sizeof(monitor);
    DEVMODEW mode{};
    mode.dmSize = sizeof(mode);
    if (!EnumDisplayDevicesW(nullptr, 0, &adapter, 0) ||
        !EnumDisplayDevicesW(adapter.DeviceName, 0, &monitor, EDD_GET_DEVICE_INTERFACE_NAME) ||
        !EnumDisplaySettingsW(adapter.DeviceName, ENUM_CURRENT_SETTINGS, &mode)) {
        GTEST_SKIP() << "this machine has no monitor";
    }
    // "\\?\DISPLAY#Default_Monitor#0000&0000#{...}"
    std::wstring id(monitor.DeviceID);
    id = id.substr(4, id.rfind(L'#') - 4);
    std::replace(id.begin(), id.end(), L'#', L'\\');
    std::vector<BYTE> edid(128, 0x5A);
    edid[8] = 0x10;
    edid[9] = 0xAC;
    const real_devices::StoredEdid stored(id, edid);

    const std::vector<Row> rows = RowsOf(RunHost({L"--list-devices"}).output, "DisplayList");
    ASSERT_EQ(rows.size(), 1U);
    Row row = rows[0];
    ASSERT_EQ(row.size(), 6U);
    row.erase(row.begin() + 1);  // The name is the display driver's choice.
    const std::wstring path(monitor.DeviceID);
    EXPECT_THAT(row, ElementsAre("Monitor",
                                 std::to_string(mode.dmPelsWidth) + "x" +
                                     std::to_string(mode.dmPelsHeight) + "@" +
                                     std::to_string(mode.dmDisplayFrequency) + "Hz_INTERNAL_I",
                                 "DEL#", ToUtf8(path.substr(4, 15)), ToUtf8(path)));
}

TEST_F(ListDevicesHere, CountsWhatItShows) {
    const std::string output = RunHost({L"--list-devices"}).output;
    const std::size_t devices = plain_walk::InstanceIds().size();
    EXPECT_THAT(LinesOf(output), Contains("Not reported: " + std::to_string(devices) + " devices"));
    EXPECT_THAT(LinesOf(output),
                Contains(testing::MatchesRegex("device map +" + std::to_string(devices))));
}

TEST_F(ListDevicesHere, LeavesWhatThePluginKeepsInTheRegistry) {
    const std::int64_t written = 1'700'000'000;
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, host::kKeptStateKey, host::kBiosReportTime,
                              REG_QWORD, &written, sizeof(written)),
              ERROR_SUCCESS);
    EXPECT_EQ(RunHost({L"--list-devices"}).exitCode, 0U);
    std::int64_t read = 0;
    DWORD size = sizeof(read);
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, host::kKeptStateKey, host::kBiosReportTime,
                           RRF_RT_REG_QWORD, nullptr, &read, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(read, written);
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, host::kKeptStateKey, host::kBiosReportTime);
}

}  // namespace
}  // namespace host_test
