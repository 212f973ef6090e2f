#include "util/module_reference.h"

namespace {

HMODULE FindThisModule(DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(flags | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(&FindThisModule), &module);
    return module;
}

}  // namespace

ScopedModule ReferenceThisModule() { return ScopedModule(FindThisModule(/*flags=*/0)); }

void ReleaseThisModuleAndExitThread(DWORD exitCode) {
    FreeLibraryAndExitThread(FindThisModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT),
                             exitCode);
}
