// Loads the plug-in as a host would and tells on standard output what becomes of it:
//
//     entry_probe LIBRARY_FOLDER exit|unload [MANAGER]
//
// LIBRARY_FOLDER holds the plug-in and the suite's libraries; the plug-in manager is looked for
// beside this program. "exit" ends the process with the plug-in loaded. MANAGER is the path of a
// manager that is loaded before the plug-in.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

constexpr int kExitCode = 42;

void Tell(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void TellWhetherManagerIsLoaded() {
    Tell(GetModuleHandleW(L"ZedPluginsManager.dll") != nullptr ? "manager is loaded"
                                                               : "manager is not loaded");
}

}  // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    if (argumentCount < 3) {
        return 2;
    }
    const std::wstring folder = arguments[1];
    SetDllDirectoryW(folder.c_str());
    const HMODULE manager = argumentCount > 3 ? LoadLibraryW(arguments[3]) : nullptr;

    const HMODULE plugin = LoadLibraryW((folder + L"\\TallyportPlugin.dll").c_str());
    Tell(plugin != nullptr ? "loaded" : "not loaded, error " + std::to_string(GetLastError()));
    TellWhetherManagerIsLoaded();
    if (std::wcscmp(arguments[2], L"unload") == 0) {
        if (plugin != nullptr) {
            FreeLibrary(plugin);
            Tell(GetModuleHandleW(L"TallyportPlugin.dll") == nullptr ? "unloaded" : "still mapped");
            TellWhetherManagerIsLoaded();
        }
        if (manager != nullptr) {
            FreeLibrary(manager);
            TellWhetherManagerIsLoaded();
        }
    }
    return kExitCode;
}
