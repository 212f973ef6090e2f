#include "library/host/plugins/registered_plugin.h"

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        RegisterPlugin(&registration);
    } else if (reason == DLL_PROCESS_DETACH) {
        UnRegisterPlugin(&registration);
    }
    return TRUE;
}
