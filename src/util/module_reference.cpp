#include "util/module_reference.h"

ScopedModule ReferenceThisModule() {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            reinterpret_cast<const wchar_t*>(&ReferenceThisModule), &module)) {
        return ScopedModule();
    }
    return ScopedModule(module);
}

void ReleaseThisModuleAndExitThread(ScopedModule reference, DWORD exitCode) {
    FreeLibraryAndExitThread(reference.Release(), exitCode);
}
