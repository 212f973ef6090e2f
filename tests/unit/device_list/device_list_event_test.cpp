// The device list as events.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "device_reporter/device_list_payload.h"
#include "unit/device_list/device_list_test.h"

namespace {

using namespace device_list_test;
using test_support::Event;
using test_support::EventFields;

class DeviceListEvent : public DeviceListTest {};

TEST_F(DeviceListEvent, CarriesTheFiveListsInTheirOrder) {
    for (const wchar_t* const id : {L"USB\\1", L"BTHENUM\\1", L"HID\\1"}) {
        Add(id, RecordWithTexts(L"m", L"d", L"n"));
    }
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    const std::string plain =
        R"([{"class":"Mouse","desc":"d","device":"VID_1","maker":"m","name":"n"}])";
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, 0x3B2A1885);
    EXPECT_EQ(
        events[0].fields,
        (EventFields{
            {"HIDList", plain},
            {"BluetoothList", R"([{"class":"Mouse","desc":"d","device":"VID_1","maker":"m"}])"},
            {"DeviceList", plain},
            {"PrinterList", R"([{"class":"Printer","desc":"Generic Driver",)"
                            R"("device":"RAW\nUSB001","maker":"Maker",)"
                            R"("name":"Office Printer 5"}])"},
            {"DisplayList", R"([{"class":"Monitor","desc":"1920x1080@60Hz_INTERNAL_I",)"
                            R"("device":"DISPLAY#DEL4001","maker":"DEL#",)"
                            R"("name":"Monitor 24"}])"},
        }));
}

TEST_F(DeviceListEvent, LeavesOutTheKeysOfEmptyLists) {
    Add(L"USB\\1", RecordWithTexts(L"m", L"d", L"n"));
    AddDisplay(L"DEL4001", L"Monitor 24");
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(KeysOf(events[0]), (Keys{"DeviceList", "DisplayList"}));
}

TEST_F(DeviceListEvent, CarriesOnlyPrintersAndDisplaysWithoutARemovableDevice) {
    reporter.devices.clear();
    Add(L"USB\\1", RecordWithTexts(L"m", L"d", L"n"));
    Add(L"HID\\1", RecordWithTexts(L"m", L"d", L"n"));
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(KeysOf(events[0]), (Keys{"PrinterList", "DisplayList"}));
}

TEST_F(DeviceListEvent, IsNotSentWhenEverythingIsEmpty) { EXPECT_TRUE(Sent().empty()); }

TEST_F(DeviceListEvent, IsSentForAnyOneListAlone) {
    const auto expectAlone = [this](const std::string& key) {
        const std::vector<Event> events = Sent();
        ASSERT_EQ(events.size(), 1u) << key;
        EXPECT_EQ(KeysOf(events[0]), Keys{key});
    };
    for (const auto& [id, key] :
         {std::pair(L"HID\\1", "HIDList"), std::pair(L"BTHENUM\\1", "BluetoothList"),
          std::pair(L"USB\\1", "DeviceList")}) {
        Add(id, RecordWithTexts(L"m", L"d", L"n"));
        expectAlone(key);
        reporter.devices.erase(id);
    }
    AddPrinter(L"Office Printer 5");
    expectAlone("PrinterList");
    World().Change([](simulation::Machine& described) { described.printers.clear(); });
    AddDisplay(L"DEL4001", L"Monitor 24");
    expectAlone("DisplayList");
}

TEST_F(DeviceListEvent, OfThreeHidChunksAndOneDisplayChunkComesThreeTimes) {
    AddAll(L"HID\\", RecordsOfCost(2 * kRoom + 204, true));
    AddDisplay(L"DEL4001", L"Monitor 24");
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(KeysOf(events[0]), (Keys{"HIDList", "DisplayList"}));
    EXPECT_EQ(KeysOf(events[1]), Keys{"HIDList"});
    EXPECT_EQ(KeysOf(events[2]), Keys{"HIDList"});
    EXPECT_EQ(NumbersIn(events[0].fields[0].second),
              (std::vector<std::string>{"0000", "0001", "0002", "0003", "0004"}));
    EXPECT_EQ(NumbersIn(events[2].fields[0].second), std::vector<std::string>{"0010"});
}

TEST_F(DeviceListEvent, OfManyPrintersIsCutIntoChunksToo) {
    for (int i = 0; i < 20; ++i) {
        AddPrinter(L"Printer " + std::to_wstring(i));
    }
    const std::vector<Event> events = Sent();
    ASSERT_GT(events.size(), 1u);
    std::size_t count = 0;
    for (const Event& event : events) {
        EXPECT_EQ(KeysOf(event), Keys{"PrinterList"});
        count += test_support::ParseCompactJson(event.fields[0].second).items.size();
    }
    EXPECT_EQ(count, 20u);
}

TEST_F(DeviceListEvent, IsSentWithoutPrintersWhenTheyCannotBeListed) {
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    World().faults.FailCall("EnumPrintersW", 1, ERROR_ACCESS_DENIED);
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(KeysOf(events[0]), Keys{"DisplayList"});
    // Only the enumeration's own line: what failed is not parsed.
    EXPECT_EQ(suite.timeline.TextsWith("log"),
              std::vector<std::string>{"log 3 lastError != ERROR_INSUFFICIENT_BUFFER, lastError="
                                       "5(DeviceReporter::EnumPrinterList)"});
}

TEST_F(DeviceListEvent, IsSentWithoutPrintersWhenTheSecondCallFails) {
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    World().faults.FailCall("EnumPrintersW", 2, ERROR_ACCESS_DENIED);
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(KeysOf(events[0]), Keys{"DisplayList"});
}

TEST_F(DeviceListEvent, IsSentWithoutDisplaysWhenTheyCannotBeListed) {
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    World().faults.FailCall("QueryDisplayConfig", 1, ERROR_ACCESS_DENIED);
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(KeysOf(events[0]), Keys{"PrinterList"});
}

TEST_F(DeviceListEvent, WritesNoLineOfItsOwn) {
    Add(L"USB\\1", RecordWithTexts(L"m", L"d", L"n"));
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    Sent();
    EXPECT_EQ(suite.timeline.Texts(), std::vector<std::string>{"event 992614533"});
}

TEST_F(DeviceListEvent, AsksPrintersBeforeDisplaysAndEverythingBeforeItIsSent) {
    AddPrinter(L"Office Printer 5");
    AddDisplay(L"DEL4001", L"Monitor 24");
    Sent();
    const auto printers = World().journal.Calls("ClosePrinter");
    const auto displays = World().journal.Calls("GetDisplayConfigBufferSizes");
    ASSERT_EQ(printers.size(), 1u);
    ASSERT_EQ(displays.size(), 1u);
    EXPECT_LT(printers[0].sequence, displays[0].sequence);
}

TEST_F(DeviceListEvent, LeavesTheReporterAsItIs) {
    Add(L"USB\\1", RecordWithTexts(L"m", L"d", L"n"));
    reporter.reportCount = 4;
    reporter.lastReportTime = 17;
    Sent();
    EXPECT_EQ(reporter.devices.size(), 2u);
    EXPECT_EQ(reporter.reportCount, 4);
    EXPECT_EQ(reporter.lastReportTime, 17);
}

}  // namespace
