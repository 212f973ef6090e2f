// A library whose entry point refuses to be loaded.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
    return reason == DLL_PROCESS_ATTACH ? FALSE : TRUE;
}
