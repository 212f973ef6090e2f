#include "device_reporter/edid_registry.h"

#include <windows.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "simulation/call_text.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::FaultVariant;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using device_tests::SampleEdid;
using DeviceReporter::GetDataFromReg;
using DeviceReporter::GetEditRegPath;
using DeviceReporter::GetValueFromReg;
using simulation::ResourceKind;

// --- The path ---

constexpr char kNoDisplay[] = "log 3 devicePath is error!(`anonymous-namespace'::GetEditRegPath)";
constexpr char kTooFewPieces[] =
    "log 3 devicePath format is error!(`anonymous-namespace'::GetEditRegPath)";

class EdidRegistryPath : public device_tests::DeviceTest {};

struct PathCase {
    const wchar_t* devicePath;
    const wchar_t* pieces;  ///< Between the fixed begin and the fixed end of the registry path.
};

TEST_F(EdidRegistryPath, IsMadeOfTheFirstThreePieces) {
    for (const auto& [devicePath, pieces] : {
             PathCase{L"\\\\?\\DISPLAY#ABC1234#5&2a3b4c&0&UID4353"
                      L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}",
                      L"DISPLAY\\ABC1234\\5&2a3b4c&0&UID4353"},
             PathCase{L"\\\\?\\DISPLAY#ABC1234#5&2a3b4c#", L"DISPLAY\\ABC1234\\5&2a3b4c"},
             // Whatever follows the third number sign or stands before the first marker.
             PathCase{L"DISPLAY#A#B#C#D\\E", L"DISPLAY\\A\\B"},
             PathCase{L"#\\#DISPLAY#A#B#", L"DISPLAY\\A\\B"},
             PathCase{L"XDISPLAYX#DISPLAY#B#C#", L"DISPLAYX\\DISPLAY\\B"},
             PathCase{L"DISPLAY###", L"DISPLAY\\\\"},
         }) {
        EXPECT_EQ(GetEditRegPath(devicePath), std::wstring(L"SYSTEM\\CurrentControlSet\\Enum\\") +
                                                  pieces + L"\\Device Parameters");
    }
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidRegistryPath, NeedsThreeNumberSignsBehindTheMarker) {
    for (const wchar_t* path : {L"\\\\?\\DISPLAY", L"\\\\?\\DISPLAY#ABC1234",
                                L"\\\\?\\DISPLAY#ABC1234#5&2a3b4c", L"###DISPLAY#A#B"}) {
        timeline.Clear();
        EXPECT_EQ(GetEditRegPath(path), L"");
        EXPECT_THAT(Log(), ElementsAre(kTooFewPieces));
    }
}

TEST_F(EdidRegistryPath, IsEmptyForPathsThatAreNotOfDisplays) {
    for (const wchar_t* path : {L"", L"\\\\?\\USB#VID_046D#5&2a3b4c#{0}", L"\\\\?\\display#A#B#C",
                                L"\\\\?\\Display#A#B#C", L"DISPLA"}) {
        timeline.Clear();
        EXPECT_EQ(GetEditRegPath(path), L"");
        EXPECT_THAT(Log(), ElementsAre(kNoDisplay));
    }
}

// --- The value ---

constexpr wchar_t kPath[] =
    L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\DEL0001\\5&2a3b4c&0&UID4351\\Device Parameters";

/// A log line of the function that reads the value.
std::string Line(const std::string& text) {
    return "log 3 " + text + "(`anonymous-namespace'::GetValueFromReg)";
}

class EdidInTheRegistry : public device_tests::MachineTest {
protected:
    EdidInTheRegistry() {
        machine.display.paths = {device_tests::SampleDisplay(1)};
        log.onLine = [this](const test_support::LogLine&) {
            keysOpenWhenLogged += world.ledger.CountOpen(ResourceKind::RegistryKey);
        };
    }

    void TearDown() override {
        EXPECT_EQ(keysOpenWhenLogged, 0u);
        MachineTest::TearDown();
    }

    std::string edid;
    std::vector<std::wstring> data;
    std::size_t keysOpenWhenLogged = 0;
};

TEST_F(EdidInTheRegistry, IsReadWhole) {
    for (std::size_t size : {1u, 9u, 10u, 127u, 128u, 256u}) {
        const std::vector<BYTE> stored = SampleEdid(size);
        machine.display.paths[0].edid = stored;
        EXPECT_TRUE(GetValueFromReg(kPath, edid));
        EXPECT_EQ(edid, std::string(stored.begin(), stored.end()));
    }
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidInTheRegistry, IsReadWithTwoQueriesOfAKeyOpenedForReading) {
    EXPECT_TRUE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(CalledFunctions(), ElementsAre("RegOpenKeyExA", "RegQueryValueExA",
                                               "RegQueryValueExA", "RegCloseKey"));
    const simulation::JournalEntry open = Calls("RegOpenKeyExA").at(0);
    EXPECT_EQ(open["root"], "HKEY_LOCAL_MACHINE");
    EXPECT_EQ(open["subKey"],
              "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\DEL0001\\5&2a3b4c&0&UID4351"
              "\\Device Parameters");
    EXPECT_EQ(open["options"], "0");
    EXPECT_EQ(open["access"], std::to_string(0x20019));
    const auto queries = Calls("RegQueryValueExA");
    EXPECT_EQ(queries[0]["name"], "EDID");
    EXPECT_EQ(queries[0]["reserved"], "null");
    EXPECT_EQ(queries[0]["type"], "3");
    EXPECT_EQ(queries[0]["data"], "null");
    EXPECT_EQ(queries[0]["size"], "0");
    EXPECT_EQ(queries[1]["name"], "EDID");
    EXPECT_EQ(queries[1]["reserved"], "null");
    EXPECT_NE(queries[1]["data"], "null");
    EXPECT_EQ(queries[1]["size"], "128");
}

/// In the machine's ANSI code page.
std::string ToAnsi(const std::wstring& text) {
    char bytes[260];
    const int size = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                                         bytes, sizeof(bytes), nullptr, nullptr);
    return {bytes, static_cast<std::size_t>(size)};
}

std::string openedSubKey;

LSTATUS WINAPI NoteSubKey(HKEY, const char* subKey, DWORD, REGSAM, HKEY*) {
    openedSubKey = subKey;
    return ERROR_FILE_NOT_FOUND;
}

TEST_F(EdidInTheRegistry, IsLookedForInTheAnsiCodePageAndMissedInTheLogAsItIs) {
    const ImportOverride<decltype(::RegOpenKeyExA)> handMade("RegOpenKeyExA", NoteSubKey);
    const std::wstring path = L"SYSTEM\\DISPLAY\\\u00C9cran \u20AC\u5C4F";
    EXPECT_FALSE(GetValueFromReg(path, edid));
    EXPECT_EQ(openedSubKey, ToAnsi(path));
    if (GetACP() != CP_UTF8) {
        EXPECT_NE(openedSubKey, simulation::ToUtf8(path));
    }
    EXPECT_THAT(
        Log(), ElementsAre(Line("RegOpenKeyExA Failed! edidFullPath:" + simulation::ToUtf8(path))));
}

TEST_F(EdidInTheRegistry, NeedsAPath) {
    EXPECT_FALSE(GetValueFromReg(L"", edid));
    EXPECT_THAT(Log(), ElementsAre(Line("edidFullPath is empty!")));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

LSTATUS WINAPI FailWithASize(HKEY, const char*, DWORD*, DWORD*, BYTE*, DWORD* size) {
    *size = 4000000000;
    return ERROR_MORE_DATA;
}

TEST_F(EdidInTheRegistry, IsRefusedWithTheSizeThatAFailingQueryTells) {
    const ImportOverride<decltype(::RegQueryValueExA)> handMade("RegQueryValueExA", FailWithASize);
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(), ElementsAre(Line("RegQuery max Edid value length Failed, maxValueLength is "
                                        "4000000000")));
}

TEST_F(EdidInTheRegistry, IsRefusedWhenItIsEmpty) {
    machine.display.paths[0].edid = std::vector<BYTE>();
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(),
                ElementsAre(Line("RegQuery max Edid value length Failed, maxValueLength is 0")));
    EXPECT_EQ(world.journal.Count("RegQueryValueExA"), 1u);
}

constexpr std::size_t kRefusedSize = 4321;

void* RefuseOneSize(std::size_t size) {
    return size == kRefusedSize ? nullptr : ImportOverride<decltype(::malloc)>::Next()(size);
}

TEST_F(EdidInTheRegistry, IsRefusedWithTheKeyClosedWhenThereIsNoMemory) {
    machine.display.paths[0].edid = std::vector<BYTE>(kRefusedSize);
    const ImportOverride<decltype(::malloc)> handMade("malloc", RefuseOneSize);
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(), ElementsAre(Line("outValue is nullptr!")));
}

TEST_F(EdidInTheRegistry, IsAsLongAsTheSecondQuerySays) {
    Fail("RegQueryValueExA", 2, 10, FaultVariant::ShortSize);
    EXPECT_TRUE(GetValueFromReg(kPath, edid));
    // That query told a size only; the block it was given was clear.
    EXPECT_EQ(edid, std::string(10, '\0'));
}

LSTATUS WINAPI AnswerAsText(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                            DWORD* size) {
    const LSTATUS status =
        ImportOverride<decltype(::RegQueryValueExA)>::Next()(key, name, reserved, type, data, size);
    *type = REG_SZ;
    return status;
}

TEST_F(EdidInTheRegistry, MayBeOfAnyType) {
    const ImportOverride<decltype(::RegQueryValueExA)> handMade("RegQueryValueExA", AnswerAsText);
    EXPECT_TRUE(GetValueFromReg(kPath, edid));
    EXPECT_EQ(edid.size(), 128u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidInTheRegistry, OfFewerThanTenBytesIsOutOfRangeWithTheKeyClosed) {
    for (std::size_t size : {1u, 8u, 9u}) {
        machine.display.paths[0].edid = SampleEdid(size);
        EXPECT_THROW(GetDataFromReg(kPath, data), std::out_of_range) << size;
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    }
    EXPECT_THAT(data, IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidInTheRegistry, IsNoDataWhenItsManufacturerIsNone) {
    machine.display.paths[0].edid = std::vector<BYTE>(128);
    EXPECT_FALSE(GetDataFromReg(kPath, data));
    EXPECT_THAT(data, IsEmpty());
    EXPECT_EQ(Log().back(), "log 3 PushEdidToData failed!(`anonymous-namespace'::GetDataFromReg)");
}

}  // namespace
