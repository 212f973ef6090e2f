#include "simulation/fakes/modules.h"

#include <windows.h>
// windows.h has to come first.
#include <pathcch.h>

#include <algorithm>

#include "simulation/fake_call.h"

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
    FakeCall call("GetModuleHandleW");
    call.Argument("name", name);
    if (call.PlannedFault()) {
        return call.Fails<HMODULE>(nullptr);
    }
    return call.PassTo(realGetModuleHandleW, name);
}

BOOL WINAPI FakeGetModuleHandleExW(DWORD flags, const wchar_t* name, HMODULE* module) {
    FakeCall call("GetModuleHandleExW");
    call.Argument("flags", flags);
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
    FakeCall call("GetModuleFileNameW");
    call.Argument("module", module);
    call.Argument("capacity", capacity);
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
    FakeCall call("PathCchRemoveFileSpec");
    call.Argument("path", path);
    call.Argument("capacity", capacity);
    if (call.PlannedFault()) {
        return call.PlannedFault()->variant == FaultVariant::SuccessWithNothing
                   ? call.Returns<HRESULT>(S_FALSE)
                   : call.FailsWithStatus<HRESULT>();
    }
    return call.ReturnsStatus(realPathCchRemoveFileSpec(path, capacity));
}

HMODULE WINAPI FakeLoadLibraryW(const wchar_t* name) {
    FakeCall call("LoadLibraryW");
    call.Argument("name", name);
    if (call.PlannedFault()) {
        return call.Fails<HMODULE>(nullptr);
    }
    const HMODULE module = call.PassTo(realLoadLibraryW, name);
    if (module != nullptr) {
        call.world().ledger.Adopt(ResourceKind::ModuleReference, module, ToUtf8(name));
    }
    return module;
}

FARPROC WINAPI FakeGetProcAddress(HMODULE module, const char* name) {
    FakeCall call("GetProcAddress");
    call.Argument("module", module);
    if (reinterpret_cast<std::uintptr_t>(name) <= 0xFFFF) {
        call.Argument("name", static_cast<const void*>(name));  // An ordinal.
    } else {
        call.Argument("name", name);
    }
    if (call.PlannedFault()) {
        return call.Fails<FARPROC>(nullptr);
    }
    return call.PassTo(realGetProcAddress, module, name);
}

BOOL WINAPI FakeFreeLibrary(HMODULE module) {
    FakeCall call("FreeLibrary");
    call.Argument("module", module);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    call.world().ledger.Release(ResourceKind::ModuleReference, module);
    return call.PassTo(realFreeLibrary, module);
}

void WINAPI FakeFreeLibraryAndExitThread(HMODULE module, DWORD exitCode) {
    {
        FakeCall call("FreeLibraryAndExitThread");
        call.Argument("module", module);
        call.Argument("exitCode", exitCode);
        call.world().ledger.Release(ResourceKind::ModuleReference, module);
    }
    // Never comes back, so nothing of ours may be left open.
    realFreeLibraryAndExitThread(module, exitCode);
}

}  // namespace

void InstallModuleFakes(ImportRedirection& redirection) {
    realGetModuleHandleW = redirection.RedirectIfImported<decltype(::GetModuleHandleW)>(
        "GetModuleHandleW", FakeGetModuleHandleW);
    realGetModuleHandleExW = redirection.RedirectIfImported<decltype(::GetModuleHandleExW)>(
        "GetModuleHandleExW", FakeGetModuleHandleExW);
    realGetModuleFileNameW = redirection.RedirectIfImported<decltype(::GetModuleFileNameW)>(
        "GetModuleFileNameW", FakeGetModuleFileNameW);
    realPathCchRemoveFileSpec = redirection.RedirectIfImported<decltype(::PathCchRemoveFileSpec)>(
        "PathCchRemoveFileSpec", FakePathCchRemoveFileSpec);
    realLoadLibraryW =
        redirection.RedirectIfImported<decltype(::LoadLibraryW)>("LoadLibraryW", FakeLoadLibraryW);
    realGetProcAddress = redirection.RedirectIfImported<decltype(::GetProcAddress)>(
        "GetProcAddress", FakeGetProcAddress);
    realFreeLibrary =
        redirection.RedirectIfImported<decltype(::FreeLibrary)>("FreeLibrary", FakeFreeLibrary);
    realFreeLibraryAndExitThread = redirection.RedirectIfImported<ExitThreadFunction>(
        "FreeLibraryAndExitThread", FakeFreeLibraryAndExitThread);
}

}  // namespace simulation
