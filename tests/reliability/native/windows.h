// The few names of the system's header that the timer manager's headers mention, for a build on
// another system.
#pragma once

using DWORD = unsigned long;
using HANDLE = void*;
using HMODULE = void*;

inline void CloseHandle(HANDLE /*handle*/) {}
inline void FreeLibrary(HMODULE /*module*/) {}
