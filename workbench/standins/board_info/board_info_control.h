// What a host or a test sets on BoardInfo.dll. The plug-in never sees it. Every function may be
// called from any thread.
#pragma once

#include "platform/board_info.h"

extern "C" {

/// Learns of each call into the library before it is answered: "GetInstance",
/// "GetBoardProductName", "GetOemProductName" or "GetBIOSSysVersion". Called on the calling thread.
/// It must not call BoardInfo.
typedef void (*BoardInfoObserver)(void* context, const char* operation);

/// 0 makes GetInstance return null; 1, the default, lets the texts or the firmware decide.
BOARD_INFO_API void BoardInfo_SetAvailable(int available);

/// Answers with these texts. The default is the machine's own SMBIOS table, read at each call.
BOARD_INFO_API void BoardInfo_SetTexts(const wchar_t* boardProduct, const wchar_t* oemProduct,
                                       const wchar_t* biosVersion);

/// Null removes it. After the return the previous one is not called any more.
BOARD_INFO_API void BoardInfo_SetObserver(BoardInfoObserver observer, void* context);

/// Back to the defaults: available, from the firmware, no observer.
BOARD_INFO_API void BoardInfo_Reset(void);

}  // extern "C"
