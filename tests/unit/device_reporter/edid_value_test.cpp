// The EDID in the registry.
#include <windows.h>

#include <string>
#include <vector>

#include "device_reporter/edid_registry.h"
#include "simulation/call_text.h"
#include "simulation/fakes/heap.h"
#include "unit/device_reporter/import_override.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_displays.h"

namespace {

using device_tests::ElementsAre;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using DeviceReporter::GetDataFromReg;
using DeviceReporter::GetValueFromReg;
using simulation::FaultVariant;
using simulation::ResourceKind;

constexpr wchar_t kPath[] =
    L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\DEL0001\\5&2a3b4c&0&UID4351\\Device Parameters";

class EdidValue : public device_tests::MachineTest {
protected:
    EdidValue() {
        machine.display.paths = {device_tests::SampleDisplay(1)};
        log.onLine = [this](const test_support::LogLine&) {
            keysOpenWhenLogged += world.ledger.CountOpen(ResourceKind::RegistryKey);
        };
    }

    void TearDown() override {
        EXPECT_EQ(keysOpenWhenLogged, 0u);
        MachineTest::TearDown();
    }

    /// A log line of the function that reads the value.
    static std::string Line(const std::string& text) {
        return "log 3 " + text + "(`anonymous-namespace'::GetValueFromReg)";
    }

    std::string edid;
    std::size_t keysOpenWhenLogged = 0;
};

TEST_F(EdidValue, IsReadWhole) {
    for (std::size_t size : {1u, 7u, 8u, 9u, 10u, 127u, 128u, 256u}) {
        const std::vector<BYTE> stored = device_tests::SampleEdid(size);
        machine.display.paths[0].edid = stored;
        EXPECT_TRUE(GetValueFromReg(kPath, edid));
        EXPECT_EQ(edid, std::string(stored.begin(), stored.end()));
    }
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidValue, IsReadWithTwoQueriesOfAKeyOpenedForReading) {
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

TEST_F(EdidValue, NeedsAPath) {
    EXPECT_FALSE(GetValueFromReg(L"", edid));
    EXPECT_THAT(Log(), ElementsAre(Line("edidFullPath is empty!")));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_F(EdidValue, IsMissingWithItsKeyWhosePathIsLoggedWide) {
    EXPECT_FALSE(GetValueFromReg(L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\\u5C4F\\1", edid));
    EXPECT_THAT(Log(), ElementsAre(Line("RegOpenKeyExA Failed! edidFullPath:"
                                        "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\\xE5\xB1\x8F"
                                        "\\1")));
    EXPECT_THAT(CalledFunctions(), ElementsAre("RegOpenKeyExA"));
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

TEST_F(EdidValue, IsLookedForUnderItsPathInTheAnsiCodePage) {
    const ImportOverride<decltype(::RegOpenKeyExA)> handMade("RegOpenKeyExA", NoteSubKey);
    const std::wstring path = L"SYSTEM\\DISPLAY\\\u00C9cran \u20AC\u5C4F";
    EXPECT_FALSE(GetValueFromReg(path, edid));
    EXPECT_EQ(openedSubKey, ToAnsi(path));
    if (GetACP() != CP_UTF8) {
        EXPECT_NE(openedSubKey, simulation::ToUtf8(path));
    }
}

TEST_F(EdidValue, IsRefusedWhenItsKeyCannotBeOpened) {
    Fail("RegOpenKeyExA", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(GetValueFromReg(L"A", edid));
    EXPECT_THAT(Log(), ElementsAre(Line("RegOpenKeyExA Failed! edidFullPath:A")));
}

TEST_F(EdidValue, IsRefusedWhenItDoesNotExist) {
    machine.display.paths[0].edid.reset();
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(),
                ElementsAre(Line("RegQuery max Edid value length Failed, maxValueLength is 0")));
    EXPECT_EQ(world.journal.Count("RegQueryValueExA"), 1u);
}

TEST_F(EdidValue, IsRefusedWhenItIsEmpty) {
    machine.display.paths[0].edid = std::vector<BYTE>();
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(),
                ElementsAre(Line("RegQuery max Edid value length Failed, maxValueLength is 0")));
    EXPECT_EQ(world.journal.Count("RegQueryValueExA"), 1u);
}

LSTATUS WINAPI FailWithASize(HKEY, const char*, DWORD*, DWORD*, BYTE*, DWORD* size) {
    *size = 4000000000;
    return ERROR_MORE_DATA;
}

TEST_F(EdidValue, IsRefusedWithTheSizeThatAFailingQueryTells) {
    const ImportOverride<decltype(::RegQueryValueExA)> handMade("RegQueryValueExA", FailWithASize);
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(), ElementsAre(Line("RegQuery max Edid value length Failed, maxValueLength is "
                                        "4000000000")));
}

TEST_F(EdidValue, IsRefusedWithoutMemory) {
    constexpr std::size_t kSize = 172'203;
    machine.display.paths[0].edid = device_tests::SampleEdid(kSize);
    const simulation::MallocFailure refusal(kSize);
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_EQ(refusal.Count(), 1u);
    EXPECT_THAT(Log(), ElementsAre(Line("outValue is nullptr!")));
    EXPECT_EQ(world.journal.Count("RegQueryValueExA"), 1u);
}

TEST_F(EdidValue, IsRefusedSilentlyWhenOnlyItsSecondQueryFails) {
    Fail("RegQueryValueExA", 2, ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(GetValueFromReg(kPath, edid));
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_THAT(CalledFunctions(), ElementsAre("RegOpenKeyExA", "RegQueryValueExA",
                                               "RegQueryValueExA", "RegCloseKey"));
}

TEST_F(EdidValue, IsAsLongAsTheSecondQuerySays) {
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

TEST_F(EdidValue, MayBeOfAnyType) {
    const ImportOverride<decltype(::RegQueryValueExA)> handMade("RegQueryValueExA", AnswerAsText);
    EXPECT_TRUE(GetValueFromReg(kPath, edid));
    EXPECT_EQ(edid.size(), 128u);
    EXPECT_THAT(Log(), IsEmpty());
}

}  // namespace
