// The device list as events.
#include "device_reporter/device_list_payload.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "device_reporter/report_device_info.h"
#include "support/device_list_model.h"
#include "support/recorded_events.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sized_records.h"

namespace {

using namespace device_tests;
using DeviceReporter::DeviceInfo;
using test_support::Event;
using test_support::EventFields;
using test_support::ExpectedChunks;
using Keys = std::vector<std::string>;

constexpr char kPlain[] =
    R"([{"class":"Mouse","desc":"d","device":"VID_1","maker":"m","name":"n"}])";

/// A reporter with one removable device that is not listed itself, on a machine without printers
/// and displays.
class DeviceListEvent : public MachineTest {
protected:
    DeviceListEvent() { Reset(); }

    void Reset() {
        reporter.devices.clear();
        reporter.devices[L"SWD\\REMOVABLE"].isRemovable = true;
    }

    /// Adds a device that shares the removable device's container, which is the empty one.
    void Add(const std::wstring& instanceId) {
        reporter.devices[instanceId] = {false,    instanceId, L"",      L"n", L"m",
                                        L"Mouse", L"d",       L"VID_1", L""};
    }
    /// Adds records of this cost; what is written of them.
    std::vector<std::string> AddList(const std::wstring& prefix, std::size_t cost, bool withName) {
        const std::vector<DeviceInfo> devices = RecordsOfCost(cost, withName);
        for (std::size_t i = 0; i < devices.size(); ++i) {
            const std::wstring id = prefix + std::to_wstring(1000 + i);
            reporter.devices[id] = devices[i];
            reporter.devices[id].instanceId = id;
        }
        return ExpectedChunks(devices, withName);
    }
    void AddPrinter() { machine.printers.push_back(SamplePrinter(L"Office Printer 5")); }
    void AddDisplay() { machine.display.paths.push_back(SampleDisplay(1)); }

    /// Sends the list; the fields of the events that this gave.
    std::vector<EventFields> Sent() {
        std::vector<EventFields> fields;
        events.onEvent = [&fields](const Event& event) {
            EXPECT_EQ(event.id, 0x3B2A1885);
            fields.push_back(event.fields);
        };
        DeviceReporter::SendDeviceList(reporter);
        return fields;
    }
    /// The keys of each event.
    std::vector<Keys> SentKeys() {
        std::vector<Keys> keys;
        for (const EventFields& fields : Sent()) {
            keys.emplace_back();
            for (const auto& [key, value] : fields) {
                keys.back().push_back(key);
            }
        }
        return keys;
    }

    test_support::RecordedEvents events{timeline};
    DeviceReporter::ReportDeviceInfo reporter;
};

TEST_F(DeviceListEvent, CarriesTheFiveListsInTheirOrderWithoutALineOfItsOwn) {
    for (const wchar_t* const id : {L"USB\\1", L"BTHENUM\\1", L"HID\\1"}) {
        Add(id);
    }
    AddPrinter();
    AddDisplay();
    reporter.reportCount = 4;
    reporter.lastReportTime = 17;
    EXPECT_THAT(
        Sent(),
        ElementsAre(EventFields{
            {"HIDList", kPlain},
            {"BluetoothList", R"([{"class":"Mouse","desc":"d","device":"VID_1","maker":"m"}])"},
            {"DeviceList", kPlain},
            {"PrinterList", R"([{"class":"Printer","desc":"Generic Driver",)"
                            R"("device":"RAW\nUSB001","maker":"Maker",)"
                            R"("name":"Office Printer 5"}])"},
            {"DisplayList", R"([{"class":"Monitor","desc":"1920x1080@60Hz_INTERNAL_I",)"
                            R"("device":"DISPLAY#DEL0001","maker":"DEL#",)"
                            R"("name":"Monitor 1"}])"},
        }));
    EXPECT_THAT(timeline.Texts(), ElementsAre("event 992614533"));
    EXPECT_EQ(reporter.devices.size(), 4u);
    EXPECT_EQ(reporter.reportCount, 4);
    EXPECT_EQ(reporter.lastReportTime, 17);
    // Printers before displays.
    EXPECT_LT(Calls("ClosePrinter").at(0).sequence,
              Calls("GetDisplayConfigBufferSizes").at(0).sequence);
}

TEST_F(DeviceListEvent, IsSentForAnyOneListAloneAndNotForNone) {
    EXPECT_THAT(Sent(), IsEmpty());
    for (const auto& [id, key] :
         {std::pair(L"HID\\1", "HIDList"), std::pair(L"BTHENUM\\1", "BluetoothList"),
          std::pair(L"USB\\1", "DeviceList")}) {
        Add(id);
        EXPECT_THAT(SentKeys(), ElementsAre(Keys{key}));
        reporter.devices.erase(id);
    }
    AddPrinter();
    EXPECT_THAT(SentKeys(), ElementsAre(Keys{"PrinterList"}));
    AddDisplay();
    EXPECT_THAT(SentKeys(), ElementsAre(Keys{"PrinterList", "DisplayList"}));
    machine.printers.clear();
    EXPECT_THAT(SentKeys(), ElementsAre(Keys{"DisplayList"}));
}

TEST_F(DeviceListEvent, IsCutIntoChunksForManyPrintersToo) {
    for (int i = 0; i < 20; ++i) {
        AddPrinter();
    }
    const DeviceInfo printer{
        false,          L"", L"", L"Office Printer 5", L"Maker", L"Printer", L"Generic Driver",
        L"RAW\nUSB001", L""};
    std::vector<EventFields> expected;
    for (const std::string& chunk : ExpectedChunks(std::vector<DeviceInfo>(20, printer), true)) {
        expected.push_back({{"PrinterList", chunk}});
    }
    EXPECT_GT(expected.size(), 1u);
    EXPECT_EQ(Sent(), expected);
}

/// Costs of a whole list: none, one chunk to its last byte, two and three chunks.
constexpr std::size_t kCosts[] = {0, kRoom - 1, kRoom, kRoom + 1, 2 * kRoom, 2 * kRoom + 1};

TEST_F(DeviceListEvent, CarriesTheIthChunkOfEveryListThatHasOne) {
    for (const std::size_t hidCost : kCosts) {
        for (const std::size_t bluetoothCost : kCosts) {
            for (const std::size_t otherCost : kCosts) {
                Reset();
                const std::pair<const char*, std::vector<std::string>> lists[] = {
                    {"HIDList", AddList(L"HID\\", hidCost, true)},
                    {"BluetoothList", AddList(L"BTH\\", bluetoothCost, false)},
                    {"DeviceList", AddList(L"USB\\", otherCost, true)}};
                std::vector<EventFields> expected;
                for (const auto& [key, chunks] : lists) {
                    expected.resize(std::max(expected.size(), chunks.size()));
                    for (std::size_t i = 0; i < chunks.size(); ++i) {
                        expected[i].emplace_back(key, chunks[i]);
                    }
                }
                ASSERT_EQ(Sent(), expected) << hidCost << " " << bluetoothCost << " " << otherCost;
            }
        }
    }
}

TEST_F(DeviceListEvent, NeverExceedsTheLimitsOfTheEventLibrary) {
    AddList(L"HID\\", 20 * kRoom, true);
    AddList(L"BTH\\", 3 * kRoom + 1, false);
    EXPECT_EQ(Sent().size(), 20u);
    EXPECT_THAT(events.Warnings(), IsEmpty());
}

}  // namespace
