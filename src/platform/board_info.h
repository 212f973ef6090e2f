// BoardInfo.dll: texts of the machine's SMBIOS table.
#pragma once

#include <string>

#if defined(BOARD_INFO_EXPORTS)
#define BOARD_INFO_API __declspec(dllexport)
#else
#define BOARD_INFO_API __declspec(dllimport)
#endif

/// The machine's SMBIOS texts. Each is empty when the table lacks it.
class SmBiosHelper {
public:
    /// Null when the firmware offers no SMBIOS table; owned by the library.
    BOARD_INFO_API static SmBiosHelper* GetInstance();

    BOARD_INFO_API std::wstring GetBoardProductName();
    BOARD_INFO_API std::wstring GetOemProductName();
    BOARD_INFO_API std::wstring GetBIOSSysVersion();
};
