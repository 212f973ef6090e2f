#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "standins/board_info/board_info_control.h"
#include "standins/board_info/smbios_table.h"
#include "standins/common/text.h"

namespace {

constexpr DWORD kSmBiosProvider = 0x52534D42;  // 'RSMB'

std::vector<std::uint8_t> FirmwareTable() {
    std::vector<std::uint8_t> table(GetSystemFirmwareTable(kSmBiosProvider, 0, nullptr, 0));
    GetSystemFirmwareTable(kSmBiosProvider, 0, table.data(), static_cast<DWORD>(table.size()));
    return table;
}

class BoardInfo : public testing::Test {
protected:
    void SetUp() override { BoardInfo_Reset(); }
    void TearDown() override { BoardInfo_Reset(); }
};

TEST_F(BoardInfo, AnswersWithTheTextsThatWereSet) {
    BoardInfo_SetTexts(L"Board \u5c4f", L"Line 7", L"N2KET34W (1.02 )");
    SmBiosHelper* const board = SmBiosHelper::GetInstance();
    ASSERT_NE(board, nullptr);
    EXPECT_EQ(board->GetBoardProductName(), L"Board \u5c4f");
    EXPECT_EQ(board->GetOemProductName(), L"Line 7");
    EXPECT_EQ(board->GetBIOSSysVersion(), L"N2KET34W (1.02 )");

    BoardInfo_SetTexts(nullptr, nullptr, nullptr);
    EXPECT_EQ(board->GetBoardProductName(), L"");
}

TEST_F(BoardInfo, HasNoInstanceWhileItIsUnavailable) {
    BoardInfo_SetTexts(L"a", L"b", L"c");
    BoardInfo_SetAvailable(0);
    EXPECT_EQ(SmBiosHelper::GetInstance(), nullptr);
    BoardInfo_SetAvailable(1);
    EXPECT_NE(SmBiosHelper::GetInstance(), nullptr);
}

TEST_F(BoardInfo, AnswersFromTheFirmwareByDefault) {
    const std::vector<std::uint8_t> table = FirmwareTable();
    SmBiosHelper* const board = SmBiosHelper::GetInstance();
    ASSERT_EQ(board != nullptr, !table.empty());
    if (board == nullptr) {
        GTEST_SKIP() << "this machine has no SMBIOS table";
    }
    const standins::SmBiosTexts texts = standins::ParseSmBios(table.data(), table.size());
    EXPECT_EQ(board->GetBoardProductName(), standins::ToWide(texts.boardProduct));
    EXPECT_EQ(board->GetOemProductName(), standins::ToWide(texts.oemProduct));
    EXPECT_EQ(board->GetBIOSSysVersion(), standins::ToWide(texts.biosVersion));

    BoardInfo_SetTexts(L"other board", L"", L"other version");
    BoardInfo_UseFirmware();
    EXPECT_EQ(board->GetBIOSSysVersion(), standins::ToWide(texts.biosVersion));
}

TEST_F(BoardInfo, TellsItsObserverTheOrderOfTheReads) {
    std::vector<std::string> operations;
    BoardInfo_SetObserver(
        [](void* context, const char* operation) {
            static_cast<std::vector<std::string>*>(context)->emplace_back(operation);
        },
        &operations);
    BoardInfo_SetTexts(L"a", L"b", L"c");
    SmBiosHelper* const board = SmBiosHelper::GetInstance();
    board->GetOemProductName();
    board->GetBIOSSysVersion();
    board->GetBoardProductName();
    BoardInfo_SetObserver(nullptr, nullptr);
    board->GetBoardProductName();

    const std::vector<std::string> expected = {"GetInstance", "GetOemProductName",
                                               "GetBIOSSysVersion", "GetBoardProductName"};
    EXPECT_EQ(operations, expected);
}

TEST(StandinText, ReadsValidUtf8AsUtf8AndOtherBytesInTheAnsiCodePage) {
    EXPECT_EQ(standins::ToWide("\xE5\xB1\x8F"), L"\u5c4f");
    wchar_t expected[8] = L"";
    MultiByteToWideChar(CP_ACP, 0, "Caf\xE9", -1, expected, 8);
    EXPECT_EQ(standins::ToWide("Caf\xE9"), expected);
    EXPECT_EQ(standins::ToWide(""), L"");
}

TEST(StandinText, ReplacesBrokenUtf16) {
    EXPECT_EQ(standins::ToUtf8(std::wstring(L"a\xD800z")), "a\xEF\xBF\xBDz");
}

}  // namespace
