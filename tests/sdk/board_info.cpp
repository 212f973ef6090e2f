// A board that exists nowhere.
#include "platform/board_info.h"

#include "record.h"

SmBiosHelper* SmBiosHelper::GetInstance() {
    static SmBiosHelper helper;
    return &helper;
}

std::wstring SmBiosHelper::GetBoardProductName() {
    Record("other BoardInfo", "board");
    return L"OTHER-BOARD";
}

std::wstring SmBiosHelper::GetOemProductName() { return L"Other Machine"; }

std::wstring SmBiosHelper::GetBIOSSysVersion() { return L"OTHER.0001"; }
