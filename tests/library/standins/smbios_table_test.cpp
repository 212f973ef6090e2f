#include "standins/board_info/smbios_table.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

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

SmBiosTexts Parse(const Bytes& table) { return ParseSmBios(table.data(), table.size()); }

/// Memory whose last byte is followed by a page that must not be touched.
class GuardedMemory {
public:
    GuardedMemory()
        : pages(static_cast<std::uint8_t*>(
              VirtualAlloc(nullptr, 2 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
        DWORD before = 0;
        VirtualProtect(pages + kPage, kPage, PAGE_NOACCESS, &before);
    }
    ~GuardedMemory() { VirtualFree(pages, 0, MEM_RELEASE); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    const std::uint8_t* Put(const Bytes& bytes) {
        return std::copy(bytes.begin(), bytes.end(), pages + kPage - bytes.size()) - bytes.size();
    }

private:
    static constexpr std::size_t kPage = 4096;
    std::uint8_t* pages;
};

TEST(SmBiosTable, YieldsBoardProductSeventhOemStringAndBiosVersion) {
    const SmBiosTexts texts = Parse(Table({Bios(), Board(), OemStrings(), EndOfTable()}));
    EXPECT_EQ(texts.biosVersion, "1.02");
    EXPECT_EQ(texts.boardProduct, "Board X");
    EXPECT_EQ(texts.oemProduct, "Seventh");
}

TEST(SmBiosTable, TakesTheStructuresInAnyOrderAndSkipsOthers) {
    const Bytes systemWithoutTexts = Structure(1, {0, 0, 0, 0}, {});
    const Bytes slot = Structure(9, {1}, {"PCIe"});
    const SmBiosTexts texts =
        Parse(Table({systemWithoutTexts, OemStrings(), slot, Board(), Bios()}));
    EXPECT_EQ(texts.biosVersion, "1.02");
    EXPECT_EQ(texts.boardProduct, "Board X");
    EXPECT_EQ(texts.oemProduct, "Seventh");
}

TEST(SmBiosTable, TakesTheFirstStructureOfAType) {
    const SmBiosTexts texts = Parse(Table({
        Structure(2, {1, 0}, {"Maker"}),
        Board({"Maker", "second board"}),
        Bios(),
        Bios({"Maker", "second version"}),
        Structure(11, {1}, {"only one"}),
        OemStrings(),
    }));
    EXPECT_EQ(texts.boardProduct, "");
    EXPECT_EQ(texts.biosVersion, "1.02");
    EXPECT_EQ(texts.oemProduct, "");
}

TEST(SmBiosTable, YieldsNothingForTextsThatAreMissing) {
    const Bytes sixStrings = Structure(11, {6}, {"a", "b", "c", "d", "e", "f"});
    const Bytes productNumberBeyondTexts = Structure(2, {1, 3}, {"Maker", "unrelated"});
    // Where the number of the version would stand, the first text begins, with a byte 1.
    const Bytes biosWithoutVersionField = Structure(0, {1}, {"\x01unrelated"});
    const SmBiosTexts texts =
        Parse(Table({sixStrings, productNumberBeyondTexts, biosWithoutVersionField}));
    EXPECT_EQ(texts.oemProduct, "");
    EXPECT_EQ(texts.boardProduct, "");
    EXPECT_EQ(texts.biosVersion, "");
}

TEST(SmBiosTable, EndsAtTheEndOfTableStructure) {
    EXPECT_EQ(Parse(Table({Bios(), EndOfTable(), Board()})).boardProduct, "");
}

TEST(SmBiosTable, EndsAtAStructureShorterThanItsHeader) {
    const Bytes lengthThree = {9, 3, 0x10, 0, 0};
    const SmBiosTexts texts = Parse(Table({Bios(), lengthThree, Board()}));
    EXPECT_EQ(texts.biosVersion, "1.02");
    EXPECT_EQ(texts.boardProduct, "");
}

TEST(SmBiosTable, EndsAtTheLengthThatTheHeaderStates) {
    const auto biosSize = static_cast<std::uint32_t>(Bios().size());
    const SmBiosTexts texts = Parse(TableStating(biosSize, {Bios(), Board()}));
    EXPECT_EQ(texts.biosVersion, "1.02");
    EXPECT_EQ(texts.boardProduct, "");
}

TEST(SmBiosTable, EndsAtTheEndOfTheDataWhenTheHeaderStatesMore) {
    GuardedMemory memory;
    const Bytes table = TableStating(0xFFFFFFFF, {Bios(), Board()});
    EXPECT_EQ(ParseSmBios(memory.Put(table), table.size()).boardProduct, "Board X");
}

TEST(SmBiosTable, YieldsEachTextWholeOrNotAtAllWhereverTheDataEnds) {
    GuardedMemory memory;
    const Bytes withoutTexts = Structure(1, {0, 0}, {});
    const Bytes table = Table({Bios(), Board(), OemStrings(), withoutTexts});
    for (std::size_t size = 0; size <= table.size(); ++size) {
        const Bytes cut(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(size));
        const SmBiosTexts texts = ParseSmBios(memory.Put(cut), cut.size());
        const std::size_t endOfBios = 8 + Bios().size();
        const std::size_t endOfBoard = endOfBios + Board().size();
        const std::size_t endOfOemStrings = endOfBoard + OemStrings().size();
        EXPECT_EQ(texts.biosVersion, size >= endOfBios ? "1.02" : "") << "size " << size;
        EXPECT_EQ(texts.boardProduct, size >= endOfBoard ? "Board X" : "") << "size " << size;
        EXPECT_EQ(texts.oemProduct, size >= endOfOemStrings ? "Seventh" : "") << "size " << size;
    }
}

}  // namespace
