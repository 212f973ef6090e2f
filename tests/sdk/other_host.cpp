// other_host HOURS: loads manager and plug-in from its own folder, lets the manager run the
// plug-in, and tells from where each library of the suite was loaded.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr const wchar_t* kLibraries[] = {
    L"ZedPluginsManager.dll", L"LogKit.dll", L"xeevent.dll",      L"FileKit.dll",
    L"BoardInfo.dll",         L"WmiKit.dll", L"ConsentStore.dll", L"EditionAdapt.dll"};
constexpr DWORD kMillisecondsPerHour = 3600 * 1000;

void TellOrigins() {
    for (const wchar_t* const library : kLibraries) {
        wchar_t path[MAX_PATH] = L"nowhere";
        GetModuleFileNameW(GetModuleHandleW(library), path, MAX_PATH);
        std::printf("loaded %ls from %ls\n", library, path);
    }
}

}  // namespace

int main(int count, char** arguments) {
    const int hours = count == 2 ? std::atoi(arguments[1]) : 0;
    const HMODULE manager = LoadLibraryW(L"ZedPluginsManager.dll");
    const HMODULE plugin = LoadLibraryW(L"TallyportPlugin.dll");
    if (hours < 1 || manager == nullptr || plugin == nullptr) {
        std::printf("other_host: HOURS is missing, or a library cannot be loaded, error %lu\n",
                    GetLastError());
        return 1;
    }
    const auto runPlugin = reinterpret_cast<int (*)(DWORD)>(
        reinterpret_cast<void*>(GetProcAddress(manager, "RunPlugin")));
    const int ran = runPlugin(static_cast<DWORD>(hours) * kMillisecondsPerHour);
    TellOrigins();
    FreeLibrary(plugin);
    FreeLibrary(manager);
    std::printf("other_host: %s\n", ran == 1 ? "done" : "the plug-in failed");
    return ran == 1 ? 0 : 1;
}
