#include <windows.h>
#include <pathcch.h>

#include <algorithm>

#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

decltype(::GetModuleHandleW)* realGetModuleHandleW = nullptr;
decltype(::GetModuleHandleExW)* realGetModuleHandleExW = nullptr;
decltype(::GetModuleFileNameW)* realGetModuleFileNameW = nullptr;
decltype(::PathCchRemoveFileSpec)* realPathCchRemoveFileSpec = nullptr;
decltype(::LoadLibraryW)* realLoadLibraryW = nullptr;
decltype(::GetProcAddress)* realGetProcAddress = nullptr;
decltype(::FreeLibrary)* realFreeLibrary = nullptr;
// Without the attribute of the declaration, which some compilers take for a part of the type.
using ExitThreadFunction = void WINAPI(HMODULE, DWORD);
ExitThreadFunction* realFreeLibraryAndExitThread = nullptr;

HMODULE WINAPI FakeGetModuleHandleW(const wchar_t* name) {
    FakeCall call("GetModuleHandleW", Arg{"name", name});
    return call.FailsOrPassesTo(HMODULE{}, realGetModuleHandleW, name);
}

BOOL WINAPI FakeGetModuleHandleExW(DWORD flags, const wchar_t* name, HMODULE* module) {
    FakeCall call("GetModuleHandleExW", Arg{"flags", flags});
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) != 0) {
        call.Argument("name", static_cast<const void*>(name));
    } else {
        call.Argument("name", name);
    }
    if (call.PlannedFault()) {
        *module = nullptr;
        return call.Fails(FALSE);
    }
    const BOOL found = call.PassTo(realGetModuleHandleExW, flags, name, module);
    constexpr DWORD kKeepsNoReference =
        GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_PIN;
    if (found != FALSE && (flags & kKeepsNoReference) == 0) {
        call.world().ledger.Adopt(ResourceKind::ModuleReference, *module, "GetModuleHandleExW");
    }
    return found;
}

/// Plans: Fail gives length 0, ShortSize a path that fills the whole buffer, as a path does that
/// is too long for it.
DWORD WINAPI FakeGetModuleFileNameW(HMODULE module, wchar_t* path, DWORD capacity) {
    FakeCall call("GetModuleFileNameW", Arg{"module", module}, Arg{"capacity", capacity});
    if (call.PlannedFault()) {
        if (call.PlannedFault()->variant != FaultVariant::ShortSize || capacity == 0) {
            return call.Fails<DWORD>(0);
        }
        std::fill_n(path, capacity, L'x');
        std::copy_n(L"C:\\", std::min<DWORD>(capacity, 3), path);
        path[capacity - 1] = L'\0';
        return call.Fails(capacity, ERROR_INSUFFICIENT_BUFFER);
    }
    return call.PassTo(realGetModuleFileNameW, module, path, capacity);
}

/// Plans: Fail returns the planned HRESULT, SuccessWithNothing says that nothing was removed.
HRESULT WINAPI FakePathCchRemoveFileSpec(wchar_t* path, std::size_t capacity) {
    FakeCall call("PathCchRemoveFileSpec", Arg{"path", path}, Arg{"capacity", capacity});
    if (call.PlannedFault()) {
        return call.PlannedFault()->variant == FaultVariant::SuccessWithNothing
                   ? call.Returns<HRESULT>(S_FALSE)
                   : call.FailsWithStatus<HRESULT>();
    }
    return call.ReturnsStatus(realPathCchRemoveFileSpec(path, capacity));
}

HMODULE WINAPI FakeLoadLibraryW(const wchar_t* name) {
    FakeCall call("LoadLibraryW", Arg{"name", name});
    const HMODULE module = call.FailsOrPassesTo(HMODULE{}, realLoadLibraryW, name);
    if (module != nullptr) {
        call.world().ledger.Adopt(ResourceKind::ModuleReference, module, ToUtf8(name));
    }
    return module;
}

FARPROC WINAPI FakeGetProcAddress(HMODULE module, const char* name) {
    FakeCall call("GetProcAddress", Arg{"module", module}, Arg{"name", name});
    return call.FailsOrPassesTo(FARPROC{}, realGetProcAddress, module, name);
}

BOOL WINAPI FakeFreeLibrary(HMODULE module) {
    FakeCall call("FreeLibrary", Arg{"module", module});
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    call.world().ledger.Release(ResourceKind::ModuleReference, module);
    return call.PassTo(realFreeLibrary, module);
}

void WINAPI FakeFreeLibraryAndExitThread(HMODULE module, DWORD exitCode) {
    {
        FakeCall call("FreeLibraryAndExitThread", Arg{"module", module}, Arg{"exitCode", exitCode});
        call.world().ledger.Release(ResourceKind::ModuleReference, module);
    }
    // Never comes back, so nothing of ours may be left open.
    realFreeLibraryAndExitThread(module, exitCode);
}

}  // namespace

void InstallModuleFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"GetModuleHandleW", FakeGetModuleHandleW, &realGetModuleHandleW},
        {"GetModuleHandleExW", FakeGetModuleHandleExW, &realGetModuleHandleExW},
        {"GetModuleFileNameW", FakeGetModuleFileNameW, &realGetModuleFileNameW},
        {"PathCchRemoveFileSpec", FakePathCchRemoveFileSpec, &realPathCchRemoveFileSpec},
        {"LoadLibraryW", FakeLoadLibraryW, &realLoadLibraryW},
        {"GetProcAddress", FakeGetProcAddress, &realGetProcAddress},
        {"FreeLibrary", FakeFreeLibrary, &realFreeLibrary},
        {"FreeLibraryAndExitThread", FakeFreeLibraryAndExitThread, &realFreeLibraryAndExitThread},
    });
}

}  // namespace simulation
