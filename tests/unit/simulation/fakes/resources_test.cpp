// Everything that a fake hands out is in the ledger until it comes back.
#include <windows.h>
#include <dbt.h>
#include <gmock/gmock.h>
#include <sddl.h>
#include <setupapi.h>
#include <winspool.h>
#include <wtsapi32.h>

#include <functional>

#include "sample_machine.h"
#include "simulation/simulated_machine.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

using GiveBack = std::function<void()>;

GiveBack Closing(HANDLE object) {
    return [object] { EXPECT_TRUE(CloseHandle(object)); };
}

GiveBack TakeKey(const char* path) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key), ERROR_SUCCESS);
    return [key] { EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS); };
}

HANDLE Token() {
    HANDLE token = nullptr;
    EXPECT_TRUE(WTSQueryUserToken(1, &token));
    return token;
}

HWND MakeWindow() {
    return CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                           nullptr);
}

GiveBack TakeNotification() {
    const HWND window = MakeWindow();
    DEV_BROADCAST_DEVICEINTERFACE_W filter{};
    filter.dbcc_size = sizeof(filter);
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = kUsbDeviceInterface;
    const HDEVNOTIFY notification =
        RegisterDeviceNotificationW(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    return [=] {
        EXPECT_TRUE(UnregisterDeviceNotification(notification));
        EXPECT_TRUE(DestroyWindow(window));
    };
}

GiveBack TakeWindowClass() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.lpszClassName = L"ResourcesTestWnd";
    const ATOM atom = RegisterClassW(&windowClass);
    return [atom] {
        EXPECT_TRUE(UnregisterClassW(reinterpret_cast<const wchar_t*>(UINT_PTR{atom}), nullptr));
    };
}

GiveBack TakeSidText() {
    BYTE sid[SECURITY_MAX_SID_SIZE];
    wchar_t domain[64];
    DWORD sidSize = sizeof(sid);
    DWORD domainSize = 64;
    SID_NAME_USE use = SidTypeUnknown;
    EXPECT_TRUE(
        LookupAccountNameW(nullptr, L"DESK\\ann", sid, &sidSize, domain, &domainSize, &use));
    wchar_t* text = nullptr;
    EXPECT_TRUE(ConvertSidToStringSidW(sid, &text));
    return [text] { EXPECT_EQ(LocalFree(text), nullptr); };
}

/// A resource that is out once `take` has run.
struct Taking {
    ResourceKind kind;
    const char* what;
    GiveBack (*take)();
};

const Taking kTakings[] = {
    {ResourceKind::DeviceSet, "device set",
     [] {
         const HDEVINFO set = SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES);
         return GiveBack([set] { EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set)); });
     }},
    {ResourceKind::RegistryKey, "monitor's key", [] { return TakeKey(kMonitorKey); }},
    {ResourceKind::RegistryKey, "real key", [] { return TakeKey("SOFTWARE"); }},
    {ResourceKind::Printer, "printer",
     [] {
         wchar_t name[] = L"office printer 5";
         HANDLE printer = nullptr;
         EXPECT_TRUE(OpenPrinterW(name, &printer, nullptr));
         return GiveBack([printer] { EXPECT_TRUE(ClosePrinter(printer)); });
     }},
    {ResourceKind::File, "HID device",
     [] {
         return Closing(CreateFileW(kHidPath, 0, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_OVERLAPPED, nullptr));
     }},
    {ResourceKind::Token, "token", [] { return Closing(Token()); }},
    {ResourceKind::Impersonation, "impersonation",
     [] {
         const HANDLE token = Token();
         EXPECT_TRUE(ImpersonateLoggedOnUser(token));
         return GiveBack([token] {
             EXPECT_TRUE(RevertToSelf());
             EXPECT_TRUE(CloseHandle(token));
         });
     }},
    {ResourceKind::Thread, "thread",
     [] {
         const LPTHREAD_START_ROUTINE nothing = [](void*) -> DWORD { return 0; };
         return Closing(CreateThread(nullptr, 0, nothing, nullptr, 0, nullptr));
     }},
    {ResourceKind::Notification, "notification", TakeNotification},
    {ResourceKind::WindowClass, "window class", TakeWindowClass},
    {ResourceKind::Window, "window",
     [] {
         const HWND window = MakeWindow();
         return GiveBack([window] { EXPECT_TRUE(DestroyWindow(window)); });
     }},
    {ResourceKind::HeapBlock, "heap block",
     [] {
         const HGLOBAL block = GlobalAlloc(GMEM_ZEROINIT, 100);
         return GiveBack([block] { EXPECT_EQ(GlobalFree(block), nullptr); });
     }},
    {ResourceKind::WtsMemory, "session list",
     [] {
         WTS_SESSION_INFOW* list = nullptr;
         DWORD count = 0;
         EXPECT_TRUE(WTSEnumerateSessionsW(nullptr, 0, 1, &list, &count));
         return GiveBack([list] { WTSFreeMemory(list); });
     }},
    {ResourceKind::LocalMemory, "SID text", TakeSidText},
    {ResourceKind::ModuleReference, "loaded library",
     [] {
         const HMODULE library = LoadLibraryW(L"version.dll");
         return GiveBack([library] { EXPECT_TRUE(FreeLibrary(library)); });
     }},
    {ResourceKind::ModuleReference, "reference to a module",
     [] {
         HMODULE module = nullptr;
         EXPECT_TRUE(GetModuleHandleExW(0, nullptr, &module));
         return GiveBack([module] { EXPECT_TRUE(FreeLibrary(module)); });
     }},
};

TEST(FakesAndTheLedger, AccountForEveryResource) {
    Machine described = SampleMachine();
    described.printers.emplace_back().name = L"Office Printer 5";
    SimulatedMachine machine(GetModuleHandleW(nullptr), described);
    const ResourceLedger& ledger = machine.world().ledger;
    for (const Taking& taking : kTakings) {
        SCOPED_TRACE(taking.what);
        const GiveBack giveBack = taking.take();
        EXPECT_EQ(ledger.CountOpen(taking.kind), 1u);
        giveBack();
        EXPECT_TRUE(ledger.Balanced()) << ledger;
    }
}

}  // namespace
}  // namespace simulation
