#include "unit/reporters/version_calls.h"

#include <gtest/gtest.h>

#include "support/child_process.h"

namespace {

constexpr wchar_t kComponent[] =
    L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe";

struct State {
    test_support::Timeline* timeline;
    std::wstring file;
    std::string failing;
    DWORD statedSize;  ///< 0: the true one.
    DWORD lastSize;    ///< What GetFileVersionInfoSizeW answered.
    void* buffer;
};
State state;

decltype(::GetFileVersionInfoSizeW)* realGetFileVersionInfoSizeW = nullptr;
decltype(::GetFileVersionInfoW)* realGetFileVersionInfoW = nullptr;
decltype(::VerQueryValueW)* realVerQueryValueW = nullptr;

/// Notes the call and tells whether it is to fail.
bool Fails(const char* function) {
    state.timeline->Note(function);
    SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
    return state.failing == function;
}

DWORD WINAPI NotedGetFileVersionInfoSizeW(const wchar_t* file, DWORD* handle) {
    EXPECT_STREQ(file, kComponent);
    EXPECT_EQ(handle, nullptr);
    if (Fails("GetFileVersionInfoSizeW")) {
        return 0;
    }
    state.lastSize = state.statedSize != 0
                         ? state.statedSize
                         : realGetFileVersionInfoSizeW(state.file.c_str(), handle);
    return state.lastSize;
}

BOOL WINAPI NotedGetFileVersionInfoW(const wchar_t* file, DWORD handle, DWORD size, void* data) {
    EXPECT_STREQ(file, kComponent);
    EXPECT_EQ(handle, 0u);
    EXPECT_EQ(size, state.lastSize);
    state.buffer = data;
    return Fails("GetFileVersionInfoW")
               ? FALSE
               : realGetFileVersionInfoW(state.file.c_str(), handle, size, data);
}

BOOL WINAPI NotedVerQueryValueW(const void* block, const wchar_t* subBlock, void** value,
                                UINT* length) {
    EXPECT_EQ(block, state.buffer);
    EXPECT_STREQ(subBlock, L"\\");
    return Fails("VerQueryValueW") ? FALSE : realVerQueryValueW(block, subBlock, value, length);
}

}  // namespace

VersionCalls::VersionCalls(test_support::Timeline& timeline, const std::wstring& file)
    : redirection(GetModuleHandleW(nullptr)) {
    state = {&timeline, test_support::ProgramFolder() + L"\\" + file, {}, 0, 0, nullptr};
    realGetFileVersionInfoSizeW = redirection.Redirect<decltype(::GetFileVersionInfoSizeW)>(
        "GetFileVersionInfoSizeW", NotedGetFileVersionInfoSizeW);
    realGetFileVersionInfoW = redirection.Redirect<decltype(::GetFileVersionInfoW)>(
        "GetFileVersionInfoW", NotedGetFileVersionInfoW);
    realVerQueryValueW =
        redirection.Redirect<decltype(::VerQueryValueW)>("VerQueryValueW", NotedVerQueryValueW);
}

void VersionCalls::Fail(const std::string& function) { state.failing = function; }

void VersionCalls::StateSize(DWORD size) { state.statedSize = size; }
