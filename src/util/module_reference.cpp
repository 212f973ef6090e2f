#include "util/module_reference.h"

ScopedModule ReferenceThisModule() {
    ScopedModule reference;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(&ReferenceThisModule), reference.Receive());
    return reference;
}

void ReleaseThisModuleAndExitThread(ScopedModule reference, DWORD exitCode) {
    FreeLibraryAndExitThread(reference.Release(), exitCode);
}
