#include "host/event_view.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "host/event_summary.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

/// What the plug-in sends for these bytes.
std::string HexText(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        char piece[8];
        std::snprintf(piece, sizeof(piece), "0x%02x", static_cast<unsigned char>(byte));
        text += piece;
    }
    return text;
}

TEST(EventView, AlignsKeysAndMarksEmptyValues) {
    const SentEvent event{kBiosInfoEventId,
                          {{"Product", "B550"}, {"String7", ""}, {"Version", "1.2\x1b[2J"}}};
    EXPECT_EQ(DescribeEvent(event),
              (TextLines{"Product  B550", "String7  (empty)", "Version  1.2\x1b[2J"}));
}

TEST(EventView, TakesWhatIsNotUtf8ForTheAnsiCodePage) {
    EXPECT_EQ(FieldText("caf\xC3\xA9"), "caf\xC3\xA9");
    wchar_t expected[2] = {};
    ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, expected, 2), 1);
    char expectedBytes[8] = {};
    WideCharToMultiByte(CP_UTF8, 0, expected, -1, expectedBytes, 8, nullptr, nullptr);
    EXPECT_EQ(FieldText("\xE9"), expectedBytes);
}

TEST(EventView, DumpsTheEmbeddedControllersLog) {
    std::string bytes(253, '\0');
    bytes[0] = '\x0a';
    bytes[16] = '\xff';
    const SentEvent event{kEcLogEventId, {{"ECLog", HexText(bytes)}}};
    EXPECT_EQ(
        DescribeEvent(event),
        (TextLines{"ECLog: 253 bytes as 1012 characters",
                   "  0  0a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
                   " 16  ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", "and 221 zero bytes"}));
}

TEST(EventView, DumpsALogWithoutZerosToItsLastByte) {
    const SentEvent event{kEcLogEventId, {{"ECLog", HexText(std::string(17, 'A'))}}};
    EXPECT_EQ(DescribeEvent(event).back(), " 16  41");
}

TEST(EventView, ShowsALogOfAnotherFormAsItIs) {
    const SentEvent event{kEcLogEventId, {{"ECLog", "0x0A"}}};
    EXPECT_EQ(DescribeEvent(event), TextLines{"ECLog  0x0A"});
}

TEST(EventView, CountsTheDevicesOfEachChunk) {
    const SentEvent event{kDeviceListEventId,
                          {{"HIDList", R"([{"class":"c","desc":"d","device":"v","maker":"m"}])"},
                           {"DeviceList", "[]"},
                           {"PrinterList", "broken"}}};
    EXPECT_EQ(DescribeEvent(event),
              (TextLines{"HIDList      1  device   51  bytes", "DeviceList   0  devices   2  bytes",
                         "PrinterList  ?  devices   6  bytes"}));
}

TEST(EventSummary, HasARowForEachId) {
    EventSummary summary;
    summary.Add({kPopUpBlockInfoEventId, {{"mode", "OPEN_MODE"}}}, seconds(1));
    summary.Add({kBiosInfoEventId, {{"Product", "P"}}}, seconds(2));
    summary.Add({kPopUpBlockInfoEventId, {{"mode", ""}}}, hours(24));
    summary.Add({7, {}}, hours(25));
    EXPECT_EQ(
        summary.Describe(),
        (TextLines{"event      name                    count  bytes        first         last",
                   "7          unknown event               1      0  1d 01:00:00  1d 01:00:00",
                   "992614500  BIOS information            1      8  0d 00:00:02  0d 00:00:02",
                   "992614518  optimisation component      2     17  0d 00:00:01  1d 00:00:00"}));
}

TEST(EventSummary, SaysSoWhenNothingWasSent) {
    EXPECT_EQ(EventSummary().Describe(), TextLines{"No event was sent."});
}

TEST(Printable, ReplacesControlCharacters) {
    EXPECT_EQ(Printable("a\x1b[2J\n\x7f\xC3\xA9"), "a\\x1b[2J\\x0a\\x7f\xC3\xA9");
}

}  // namespace
}  // namespace host
