#include "faults/simulated_load.h"

#include <winternl.h>

#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include "faults/kept_resources.h"
#include "faults/more_fakes.h"
#include "support/child_process.h"

// Exported and documented by the system, but in no header of the toolchain.
extern "C" __declspec(dllimport) BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace faults_test {
namespace {

constexpr wchar_t kLibrary[] = L"TallyportPlugin.dll";

// Declared here: not every SDK's headers know them.
constexpr ULONG kLoaded = 1;
constexpr ULONG kUnloaded = 2;
struct LoaderNotification {
    ULONG flags;
    const UNICODE_STRING* fullName;
    const UNICODE_STRING* baseName;
    void* base;
    ULONG size;
};
using NotificationFunction = void CALLBACK(ULONG reason, const void* data, void* context);
using RegisterFunction = LONG NTAPI(ULONG flags, NotificationFunction* function, void* context,
                                    void** cookie);
using UnregisterFunction = LONG NTAPI(void* cookie);

template <class Function>
Function* FromLoader(const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

std::vector<simulation::FakeFamily> Families() {
    std::vector<simulation::FakeFamily> families = simulation::AllFakeFamilies();
    families.push_back(InstallMoreFakes);
    families.push_back(FollowKeptResources);
    return families;
}

/// Loading and unloading the system's libraries each time would take most of the time.
void KeepLibrariesOf(HMODULE module) {
    static std::set<std::string> kept;
    for (const simulation::Import& import : simulation::ImportsOf(module)) {
        if (kept.insert(import.library).second) {
            LoadLibraryA(import.library.c_str());
        }
    }
}

}  // namespace

SimulatedLoad::SimulatedLoad(const simulation::Machine& described, WorldUser afterMapping,
                             WorldUser beforeUnmapping)
    : machine(described),
      onMapped(std::move(afterMapping)),
      onUnmapped(std::move(beforeUnmapping)) {
    if (FromLoader<RegisterFunction>("LdrRegisterDllNotification")(
            /*flags=*/0, &OnLoaderNotification, this, &cookie) != 0) {
        throw std::runtime_error("the loader does not tell about libraries");
    }
    module = LoadLibraryW((test_support::ProgramFolder() + L"\\" + kLibrary).c_str());
    if (module != nullptr) {
        KeepLibrariesOf(module);
    }
}

SimulatedLoad::~SimulatedLoad() {
    while (IsMapped()) {
        Release();
    }
    FromLoader<UnregisterFunction>("LdrUnregisterDllNotification")(cookie);
}

bool SimulatedLoad::Release() {
    FreeLibrary(module);
    return !IsMapped();
}

bool SimulatedLoad::IsMapped() const { return GetModuleHandleW(kLibrary) != nullptr; }

void CALLBACK SimulatedLoad::OnLoaderNotification(ULONG reason, const void* data, void* context) {
    // The threads that were terminated may have held any lock of ours.
    if (RtlDllShutdownInProgress()) {
        return;
    }
    const auto& notification = *static_cast<const LoaderNotification*>(data);
    const std::wstring_view name(notification.baseName->Buffer,
                                 notification.baseName->Length / sizeof(wchar_t));
    if (name != kLibrary) {
        return;
    }
    SimulatedLoad& load = *static_cast<SimulatedLoad*>(context);
    if (reason == kLoaded) {
        load.OnMapped(static_cast<HMODULE>(notification.base));
    } else if (reason == kUnloaded) {
        load.OnUnmapped();
    }
}

void SimulatedLoad::OnMapped(HMODULE base) {
    module = base;
    simulated.emplace(base, machine, Families());
    onMapped(World());
}

void SimulatedLoad::OnUnmapped() {
    onUnmapped(World());
    // The imports are put back while there still are any.
    simulated.reset();
    FreeRuntimeTlsIndexes();
}

}  // namespace faults_test
