// Parts of the host that a run of it does not show as a whole.
#include <windows.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "host/host_error.h"
#include "host/run/stop_signal.h"
#include "host/run/this_computer.h"
#include "host/run/tick_schedule.h"
#include "host/views/device_list_view.h"
#include "host/views/event_view.h"
#include "records/record.h"
#include "simulation/import_redirection.h"
#include "support/comes_true.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using workbench::TextLines;

/// A chunk with one device, without a name where that is empty.
std::string Chunk(const std::string& className, const std::string& device,
                  const std::string& name) {
    return R"([{"class":")" + className + R"(","desc":"d","device":")" + device +
           R"(","maker":"m")" + (name.empty() ? "" : R"(,"name":")" + name + "\"") + "}]";
}

TEST(DeviceListView, PutsChunksTogetherAgainAndTellsWhatChanged) {
    DeviceLists lists;
    EXPECT_EQ(lists.Describe(1), TextLines());
    lists.Begin(hours(24));
    lists.Add(
        {records::kDeviceListEventId,
         {{"HIDList", Chunk("Mouse", "v1", "Maus")}, {"DeviceList", Chunk("USB", "x", "字")}}});
    // The same devices in another order and in other chunks.
    lists.Begin(hours(48));
    lists.Add({records::kDeviceListEventId, {{"DeviceList", Chunk("USB", "x", "字")}}});
    lists.Add({records::kDeviceListEventId, {{"HIDList", Chunk("Mouse", "v1", "Maus")}}});
    // A second device like the first, a Bluetooth device, which has no name, and no third list.
    lists.Begin(hours(72));
    lists.Add(
        {records::kDeviceListEventId,
         {{"HIDList", Chunk("Mouse", "v1", "Maus")}, {"BluetoothList", Chunk("MEDIA", "b", "")}}});
    lists.Add({records::kDeviceListEventId, {{"HIDList", Chunk("Mouse", "v1", "Maus")}}});
    lists.Add({records::kDeviceListEventId, {{"PrinterList", R"([{"class":1}])"}}});
    lists.Add({records::kBiosInfoEventId, {{"Product", "not a list"}}});
    EXPECT_EQ(
        lists.Describe(8),
        (TextLines{
            "Device lists, put together again from their chunks, with devices by key:",
            "list      sent at  events  bytes  HIDList  DeviceList  BluetoothList               "
            "PrinterList",
            "   8  1d 00:00:00       1    153        1           1              0                 "
            "        0",
            "   9  2d 00:00:00       2    153        1           1              0                 "
            "        0",
            "  10  3d 00:00:00       3    246        2           0              1  0 and 1 "
            "unreadable chunk",
            "",
            "What changed from list to list:",
            "  new in list 10     HIDList        Mouse  Maus  m  v1",
            "  new in list 10     BluetoothList  MEDIA  d     m  b",
            "  gone from list 10  DeviceList     USB    字    m  x",
            "",
            "Device list 10 in full:",
            "  HIDList: 2 devices",
            "    class  name  desc  maker  device",
            "    Mouse  Maus  d     m      v1",
            "    Mouse  Maus  d     m      v1",
            "  BluetoothList: 1 device",
            "    class  name  desc  maker  device",
            "    MEDIA        d     m      b",
            "  PrinterList: 0 devices and 1 unreadable chunk",
            "    class  name  desc  maker  device"}));
}

TEST(EventView, ShowsTheFieldsOfEachKindOfEvent) {
    EXPECT_EQ(DescribeEvent({records::kBiosInfoEventId, {{"Product", "B550"}, {"String7", ""}}}),
              (TextLines{"Product  B550", "String7  (empty)"}));
    EXPECT_EQ(DescribeEvent({records::kEcLogEventId, {{"ECLog", "0x0a0xff0x00"}}}),
              (TextLines{"ECLog: 3 bytes as 12 characters", "  0  0a ff 00"}));
    EXPECT_EQ(DescribeEvent({records::kEcLogEventId, {{"ECLog", "0x0A"}}}),
              TextLines{"ECLog  0x0A"});
    EXPECT_EQ(
        DescribeEvent({records::kDeviceListEventId,
                       {{"HIDList", Chunk("c", "v", "")}, {"PrinterList", "broken"}}}),
        (TextLines{"HIDList      1  device   51  bytes", "PrinterList  ?  devices   6  bytes"}));
}

TEST(EventView, TakesWhatIsNotUtf8ForTheAnsiCodePageAndHidesControlCharacters) {
    EXPECT_EQ(workbench::AsUtf8("caf\xC3\xA9"), "caf\xC3\xA9");
    wchar_t expected[2] = {};
    ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, expected, 2), 1);
    char expectedBytes[8] = {};
    WideCharToMultiByte(CP_UTF8, 0, expected, -1, expectedBytes, 8, nullptr, nullptr);
    EXPECT_EQ(workbench::AsUtf8("\xE9"), expectedBytes);
    EXPECT_EQ(workbench::Printable("a\x1b[2J\n\x7f\xC3\xA9"), "a\\x1b[2J\\x0a\\x7f\xC3\xA9");
}

TEST(EventSummary, HasARowForEachId) {
    EventSummary summary;
    EXPECT_EQ(summary.Describe(), TextLines{"No event was sent."});
    summary.Add({records::kPopUpBlockInfoEventId, {{"mode", "OPEN_MODE"}}}, seconds(1));
    summary.Add({records::kPopUpBlockInfoEventId, {{"mode", ""}}}, hours(24));
    summary.Add({7, {}}, hours(25));
    EXPECT_EQ(
        summary.Describe(),
        (TextLines{"event      name                    count  bytes        first         last",
                   "7          unknown event               1      0  1d 01:00:00  1d 01:00:00",
                   "992614518  optimisation component      2     17  0d 00:00:01  1d 00:00:00"}));
}

std::wstring RegisterLine(int interval) {
    return L"Register timer:" + std::to_wstring(interval) +
           L"(TimerReportMgr::RegisterReportCallback)";
}

TEST(TickSchedule, TicksAtTheGreatestCommonDivisorAndNamesWhatIsDue) {
    constexpr wchar_t kLoopLine[] = L"BigdataTimerReportFrame loop(F)";
    TickSchedule schedule;
    // The plug-in turns these down.
    schedule.OnLogLine(RegisterLine(0), seconds(0));
    schedule.OnLogLine(RegisterLine(-5), seconds(0));
    EXPECT_EQ(schedule.NextRun(), std::nullopt);
    schedule.OnLogLine(RegisterLine(6), seconds(1));
    schedule.OnLogLine(RegisterLine(4), seconds(2));
    EXPECT_EQ(schedule.NextRun(), "0d 02:00:02 (no report)");
    schedule.OnLogLine(kLoopLine, seconds(10));
    EXPECT_EQ(schedule.HoursPassed(hours(2) + seconds(9)), 0);
    EXPECT_EQ(schedule.HoursPassed(hours(2) + seconds(10)), 2);
    schedule.OnLogLine(kLoopLine, hours(2) + seconds(15));
    EXPECT_EQ(schedule.NextRun(), "0d 04:00:15 (4-hour reports)");
    schedule.Clear();
    EXPECT_EQ(schedule.NextRun(), std::nullopt);
    EXPECT_EQ(schedule.HoursPassed(hours(12)), 0);
}

/// What the system runs in a process when Ctrl-C is pressed at its console.
bool PressCtrlC() {
    const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine")));
    if (routine == nullptr) {
        return false;
    }
    const HANDLE thread =
        CreateThread(nullptr, 0, routine,
                     reinterpret_cast<void*>(static_cast<ULONG_PTR>(CTRL_C_EVENT)), 0, nullptr);
    return thread != nullptr && CloseHandle(thread) != FALSE;
}

TEST(StopSignal, EndsAWaitOnCtrlCInsteadOfTheProcess) {
    const StopSignal signal;
    EXPECT_FALSE(signal.WaitFor(std::chrono::milliseconds(1)));
    ASSERT_TRUE(PressCtrlC());
    EXPECT_TRUE(signal.WaitFor(test_support::kPatience));
    EXPECT_TRUE(signal.WaitFor(std::chrono::milliseconds(0)));  // And stays.
}

/// The program's own import table is redirected, so that the host's code in it meets the refusal.
class SystemRefusal : public testing::Test {
protected:
    std::string ErrorOfPrepare(KeptState wanted) {
        try {
            ThisComputer(wanted, screen).Prepare();
        } catch (const RunFailed& error) {
            return error.what();
        }
        return "no error";
    }

    const std::string reason = ": " + Win32ErrorText(ERROR_ACCESS_DENIED) +
                               "; run with more rights, or on a described machine: --machine FILE";
    simulation::ImportRedirection imports{GetModuleHandleW(nullptr)};
    RunClock clock;
    Screen screen{clock, /*isQuiet=*/true};
};

TEST_F(SystemRefusal, OfRemovingAValueEndsInOneLine) {
    imports.Redirect<decltype(::RegDeleteKeyValueW)>(
        "RegDeleteKeyValueW",
        [](HKEY, const wchar_t*, const wchar_t*) -> LSTATUS { return ERROR_ACCESS_DENIED; });
    EXPECT_EQ(ErrorOfPrepare(KeptState::Remove),
              "cannot remove the registry value BiosReportTime" + reason);
}

TEST_F(SystemRefusal, OfSettingAValueEndsInOneLine) {
    imports.Redirect<decltype(::RegSetKeyValueW)>(
        "RegSetKeyValueW",
        [](HKEY, const wchar_t*, const wchar_t*, DWORD, const void*, DWORD) -> LSTATUS {
            return ERROR_ACCESS_DENIED;
        });
    EXPECT_EQ(ErrorOfPrepare(KeptState::Keep),
              "cannot set the registry value PopUpBlockingStatus" + reason);
}

}  // namespace
}  // namespace host
