#include "standins/board_info/smbios_table.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "common/text.h"
#include "fuzz/guarded_memory.h"
#include "standins/board_info/board_info_control.h"

namespace {

using standins::ParseSmBios;
using standins::SmBiosTexts;

using Bytes = std::vector<std::uint8_t>;

/// One structure: header, the formatted bytes after it, and its texts.
Bytes Structure(std::uint8_t type, const Bytes& afterHeader,
                std::initializer_list<std::string> texts) {
    Bytes bytes = {type, static_cast<std::uint8_t>(4 + afterHeader.size()), 0x10, 0x00};
    bytes.insert(bytes.end(), afterHeader.begin(), afterHeader.end());
    for (const std::string& text : texts) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        bytes.push_back(0);
    }
    if (texts.size() == 0) {
        bytes.push_back(0);
    }
    bytes.push_back(0);
    return bytes;
}

Bytes Bios(std::initializer_list<std::string> texts = {"Maker", "1.02"}) {
    return Structure(0, {1, 2, 0, 0xE0}, texts);
}
Bytes Board(std::initializer_list<std::string> texts = {"Maker", "Board X"}) {
    return Structure(2, {1, 2}, texts);
}
Bytes OemStrings() { return Structure(11, {7}, {"a", "b", "c", "d", "e", "f", "Seventh", "h"}); }
Bytes EndOfTable() { return Structure(127, {}, {}); }

/// The structures behind a header that states `length`.
Bytes TableStating(std::uint32_t length, std::initializer_list<Bytes> structures) {
    Bytes table = {0, 3, 2, 0};
    for (int shift = 0; shift < 32; shift += 8) {
        table.push_back(static_cast<std::uint8_t>(length >> shift));
    }
    for (const Bytes& structure : structures) {
        table.insert(table.end(), structure.begin(), structure.end());
    }
    return table;
}

Bytes Table(std::initializer_list<Bytes> structures) {
    std::size_t length = 0;
    for (const Bytes& structure : structures) {
        length += structure.size();
    }
    return TableStating(static_cast<std::uint32_t>(length), structures);
}

/// Reads nothing beyond the table.
SmBiosTexts Parse(const Bytes& table) {
    fuzz::GuardedMemory memory(table.size() + 1);
    std::uint8_t* const end = memory.Last(table.size());
    std::copy(table.begin(), table.end(), end);
    return ParseSmBios(end, table.size());
}

struct Reading {
    const char* name;
    Bytes table;
    std::string board, oem, bios;
};

std::vector<Reading> Readings() {
    const Bytes withoutTexts = Structure(1, {0, 0, 0, 0}, {});
    const Bytes slot = Structure(9, {1}, {"PCIe"});
    const Bytes shorterThanItsHeader = {9, 3, 0x10, 0, 0};
    const Bytes sixStrings = Structure(11, {6}, {"a", "b", "c", "d", "e", "f"});
    const Bytes numberBeyondTexts = Structure(2, {1, 3}, {"Maker", "unrelated"});
    // Where the number of the version would stand, the first text begins, with a byte 1.
    const Bytes withoutVersionField = Structure(0, {1}, {"\x01unrelated"});
    return {
        {"AnyOrder", Table({withoutTexts, OemStrings(), slot, Board(), Bios(), EndOfTable()}),
         "Board X", "Seventh", "1.02"},
        {"FirstOfAType",
         Table({Structure(2, {1, 0}, {"Maker"}), Board({"Maker", "second"}), Bios(),
                Bios({"Maker", "second"}), Structure(11, {1}, {"one"}), OemStrings()}),
         "", "", "1.02"},
        {"MissingTexts", Table({sixStrings, numberBeyondTexts, withoutVersionField}), "", "", ""},
        {"EndOfTable", Table({Bios(), EndOfTable(), Board()}), "", "", "1.02"},
        {"ShortHeader", Table({Bios(), shorterThanItsHeader, Board()}), "", "", "1.02"},
        {"StatedLength", TableStating(std::uint32_t(Bios().size()), {Bios(), Board()}), "", "",
         "1.02"},
        {"StatedTooMuch", TableStating(0xFFFFFFFF, {Bios(), Board()}), "Board X", "", "1.02"},
    };
}

TEST(SmBiosTable, YieldsBoardProductSeventhOemStringAndBiosVersion) {
    for (const Reading& reading : Readings()) {
        const SmBiosTexts texts = Parse(reading.table);
        EXPECT_EQ(texts.boardProduct, reading.board) << reading.name;
        EXPECT_EQ(texts.oemProduct, reading.oem) << reading.name;
        EXPECT_EQ(texts.biosVersion, reading.bios) << reading.name;
    }
}

TEST(SmBiosTable, YieldsEachTextWholeOrNotAtAllWhereverTheDataEnds) {
    const Bytes withoutTexts = Structure(1, {0, 0}, {});
    const Bytes table = Table({Bios(), Board(), OemStrings(), withoutTexts});
    for (std::size_t size = 0; size <= table.size(); ++size) {
        const Bytes cut(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(size));
        const SmBiosTexts texts = Parse(cut);
        const std::size_t endOfBios = 8 + Bios().size();
        const std::size_t endOfBoard = endOfBios + Board().size();
        const std::size_t endOfOemStrings = endOfBoard + OemStrings().size();
        EXPECT_EQ(texts.biosVersion, size >= endOfBios ? "1.02" : "") << "size " << size;
        EXPECT_EQ(texts.boardProduct, size >= endOfBoard ? "Board X" : "") << "size " << size;
        EXPECT_EQ(texts.oemProduct, size >= endOfOemStrings ? "Seventh" : "") << "size " << size;
    }
}

TEST(BoardInfo, AnswersFromTheFirmwareByDefault) {
    constexpr DWORD kSmBiosProvider = 0x52534D42;  // 'RSMB'
    Bytes table(GetSystemFirmwareTable(kSmBiosProvider, 0, nullptr, 0));
    GetSystemFirmwareTable(kSmBiosProvider, 0, table.data(), static_cast<DWORD>(table.size()));
    SmBiosHelper* const board = SmBiosHelper::GetInstance();
    ASSERT_EQ(board != nullptr, !table.empty());
    if (board == nullptr) {
        GTEST_SKIP() << "this machine has no SMBIOS table";
    }
    const SmBiosTexts texts = Parse(table);
    EXPECT_EQ(board->GetBoardProductName(), workbench::ToWide(texts.boardProduct));
    EXPECT_EQ(board->GetOemProductName(), workbench::ToWide(texts.oemProduct));
    EXPECT_EQ(board->GetBIOSSysVersion(), workbench::ToWide(texts.biosVersion));
}

}  // namespace
