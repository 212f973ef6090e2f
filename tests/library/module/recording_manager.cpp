// A plug-in manager that tells on standard output what plug-ins ask of it.
#include <windows.h>

#include <string>

#include "platform/plugins_manager.h"

namespace {

/// Unbuffered: the manager may be unloaded or the process end right after.
void Tell(const std::string& line) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line.data(), static_cast<DWORD>(line.size()),
              &written, nullptr);
}

}  // namespace

extern "C" __declspec(dllexport) void RegisterPlugin(PluginRegistrationInfo* registration) {
    Tell("RegisterPlugin " + registration->id + "\n");
}

extern "C" __declspec(dllexport) void UnRegisterPlugin(PluginRegistrationInfo* registration) {
    Tell("UnRegisterPlugin " + registration->id + "\n");
}
