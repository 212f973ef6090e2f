// Modules, version resources and windows: the fakes and the system answer alike. Left out is that
// the simulated system knows no folders: a file there is merely not found.
#include <windows.h>
#include <dbt.h>
#include <gmock/gmock.h>
#include <pathcch.h>

#include "agreement.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

const HWND kNoWindow = reinterpret_cast<HWND>(0xDEAD0);

TEST(ProgramFakesAndTheSystem, AnswerAlike) {
    ExpectSameAnswers({
        {"size of a version resource of no file",
         [](Subject&) {
             return Outcome(static_cast<BOOL>(GetFileVersionInfoSizeW(nullptr, nullptr)));
         }},
        {"size of a version resource of a file without name",
         [](Subject&) {
             return Outcome(static_cast<BOOL>(GetFileVersionInfoSizeW(L"", nullptr)));
         }},
        {"size of a version resource of a file that is not there",
         [](Subject&) {
             return Outcome(static_cast<BOOL>(GetFileVersionInfoSizeW(L"C:\\none.exe", nullptr)));
         }},
        {"handle that comes with the size",
         [](Subject& s) {
             s.count = 77;
             EXPECT_NE(GetFileVersionInfoSizeW(kVersionedFile, &s.count), 0u);
             return static_cast<LONG>(s.count);
         }},
        {"handle that comes with no size",
         [](Subject& s) {
             s.count = 77;
             GetFileVersionInfoSizeW(L"C:\\none.exe", &s.count);
             return static_cast<LONG>(s.count);
         }},
        {"version resource of a file that is not there",
         [](Subject& s) {
             return Outcome(GetFileVersionInfoW(L"C:\\none.exe", 0, sizeof(s.block), s.block));
         }},
        {"version resource into nothing",
         [](Subject&) { return Outcome(GetFileVersionInfoW(kVersionedFile, 0, 2048, nullptr)); }},
        {"version resource into no byte",
         [](Subject& s) { return Outcome(GetFileVersionInfoW(kVersionedFile, 0, 0, s.block)); }},
        {"version resource into a block that is too small",
         [](Subject& s) { return Outcome(GetFileVersionInfoW(kVersionedFile, 0, 60, s.block)); }},
        {"size of the version numbers",
         [](Subject& s) {
             void* numbers = nullptr;
             UINT size = 0;
             EXPECT_TRUE(GetFileVersionInfoW(kVersionedFile, 0, sizeof(s.block), s.block));
             return Outcome(VerQueryValueW(s.block, L"\\", &numbers, &size)) * 1000 +
                    static_cast<LONG>(size);
         }},
        {"version value that is not there",
         [](Subject& s) {
             void* value = nullptr;
             UINT size = 0;
             EXPECT_TRUE(GetFileVersionInfoW(kVersionedFile, 0, sizeof(s.block), s.block));
             return Outcome(VerQueryValueW(s.block, L"\\NoSuchInfo", &value, &size));
         }},
        {"module that is not loaded",
         [](Subject&) {
             return Outcome(GetModuleHandleW(L"no_such_library.dll") != nullptr ? TRUE : FALSE);
         }},
        {"reference to a module that is not loaded",
         [](Subject&) {
             HMODULE module = nullptr;
             return Outcome(GetModuleHandleExW(0, L"no_such_library.dll", &module));
         }},
        {"reference to a module by two rules",
         [](Subject&) {
             HMODULE module = nullptr;
             return Outcome(GetModuleHandleExW(
                 GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                 nullptr, &module));
         }},
        {"reference to a module at no address",
         [](Subject&) {
             HMODULE module = nullptr;
             return Outcome(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                               reinterpret_cast<const wchar_t*>(16), &module));
         }},
        {"path of a module into a buffer that is too small",
         [](Subject& s) {
             const DWORD length = GetModuleFileNameW(nullptr, s.text, 4);
             return Outcome(FALSE) * 10 + static_cast<LONG>(length);
         }},
        {"path of no module",
         [](Subject& s) {
             return Outcome(static_cast<BOOL>(
                 GetModuleFileNameW(reinterpret_cast<HMODULE>(64), s.text, 1024)));
         }},
        {"folder of a root",
         [](Subject&) {
             wchar_t path[] = L"C:\\";
             return PathCchRemoveFileSpec(path, 4);
         }},
        {"folder of nothing", [](Subject&) { return PathCchRemoveFileSpec(nullptr, 4); }},
        {"load a library that is not there",
         [](Subject&) {
             return Outcome(LoadLibraryW(L"no_such_library.dll") != nullptr ? TRUE : FALSE);
         }},
        {"function that is not there",
         [](Subject&) {
             return Outcome(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "NoSuchFunction") !=
                                    nullptr
                                ? TRUE
                                : FALSE);
         }},
        {"free no library", [](Subject&) { return Outcome(FreeLibrary(nullptr)); }},
        {"register a class twice",
         [](Subject&) {
             WNDCLASSW windowClass{};
             windowClass.lpfnWndProc = DefWindowProcW;
             windowClass.hInstance = GetModuleHandleW(nullptr);
             windowClass.lpszClassName = L"AgreementWnd";
             EXPECT_NE(RegisterClassW(&windowClass), 0);
             const LONG outcome = Outcome(RegisterClassW(&windowClass));
             EXPECT_TRUE(UnregisterClassW(L"AgreementWnd", windowClass.hInstance));
             return outcome;
         }},
        {"unregister a class that is not there",
         [](Subject&) {
             return Outcome(UnregisterClassW(L"NoSuchWnd", GetModuleHandleW(nullptr)));
         }},
        {"make a window of a class that is not there",
         [](Subject&) {
             return Outcome(CreateWindowExW(0, L"NoSuchWnd", L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                            nullptr, nullptr, nullptr) != nullptr
                                ? TRUE
                                : FALSE);
         }},
        {"destroy no window", [](Subject&) { return Outcome(DestroyWindow(kNoWindow)); }},
        {"post to no window",
         [](Subject&) { return Outcome(PostMessageW(kNoWindow, WM_CLOSE, 0, 0)); }},
        {"message of no window",
         [](Subject&) {
             MSG message{};
             const BOOL result = GetMessageW(&message, kNoWindow, 0, 0);
             return result * 10000 + Outcome(FALSE);
         }},
        {"notifications for no window",
         [](Subject&) {
             DEV_BROADCAST_DEVICEINTERFACE_W filter{};
             filter.dbcc_size = sizeof(filter);
             filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
             filter.dbcc_classguid = kUsbDeviceInterface;
             return Outcome(RegisterDeviceNotificationW(kNoWindow, &filter, 0) != nullptr ? TRUE
                                                                                          : FALSE);
         }},
    });
}

}  // namespace
}  // namespace simulation
