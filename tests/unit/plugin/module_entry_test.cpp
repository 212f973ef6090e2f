// The library's entry point, linked into the test program so that its calls can be watched. What it
// does in the built library, whose calls fail too, is in the tests of the library.
#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "plugin/plugin_registration.h"
#include "simulation/call_text.h"
#include "simulation/fakes/families.h"
#include "simulation/simulated_machine.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "support/child_process.h"
#include "unit/import_override.h"
#include "util/kept_at_process_end.h"
#include "util/scoped_handle.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace {

using Names = std::vector<std::string>;

class ModuleEntry : public testing::Test {
protected:
    ~ModuleEntry() override {
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
        EXPECT_TRUE(world.faults.Missed().empty());
        // For good, and so for every test behind: what the end of the process does is seen in a
        // process of its own.
        EXPECT_FALSE(processIsEnding);
    }

    /// The calls that one entry makes.
    Names CallsOf(DWORD reason, BOOL expectedResult) {
        world.journal.Clear();
        EXPECT_EQ(DllMain(program, reason, /*reserved=*/nullptr), expectedResult);
        return world.journal.Names();
    }

    Names Attach(BOOL expectedResult) { return CallsOf(DLL_PROCESS_ATTACH, expectedResult); }
    Names Detach() { return CallsOf(DLL_PROCESS_DETACH, TRUE); }

    std::string Argument(const char* function, const char* name) {
        const std::vector<simulation::JournalEntry> calls = world.journal.Calls(function);
        return calls.empty() ? "no such call" : calls.back()[name];
    }

    static bool ManagerIsLoaded() { return GetModuleHandleW(L"ZedPluginsManager.dll") != nullptr; }

    const HMODULE program = GetModuleHandleW(nullptr);
    simulation::SimulatedMachine machine{program, {}, {simulation::InstallModuleFakes}};
    simulation::World& world = machine.world();
};

// --- The manager is loaded already ---

class ModuleEntryWithManager : public ModuleEntry {
protected:
    std::size_t RegistrationCount() {
        return reinterpret_cast<decltype(&ZedPluginsManager_Count)>(
            reinterpret_cast<void*>(GetProcAddress(manager.Get(), "ZedPluginsManager_Count")))();
    }
    const PluginRegistrationInfo* FirstRegistration() {
        return reinterpret_cast<decltype(&ZedPluginsManager_At)>(
            reinterpret_cast<void*>(GetProcAddress(manager.Get(), "ZedPluginsManager_At")))(0);
    }

    const ScopedModule manager{
        LoadLibraryW((test_support::ProgramFolder() + L"\\ZedPluginsManager.dll").c_str())};
};

TEST_F(ModuleEntryWithManager, RegistersTheRecordAndNeitherLoadsNorReleasesTheManager) {
    EXPECT_EQ(Attach(TRUE), (Names{"GetModuleHandleW", "GetProcAddress"}));
    EXPECT_EQ(Argument("GetModuleHandleW", "name"), "ZedPluginsManager.dll");
    EXPECT_EQ(Argument("GetProcAddress", "name"), "RegisterPlugin");
    EXPECT_EQ(RegistrationCount(), 1u);
    EXPECT_EQ(FirstRegistration(), &pluginRegistration);

    EXPECT_EQ(Detach(), (Names{"GetModuleHandleW", "GetProcAddress"}));
    EXPECT_EQ(Argument("GetProcAddress", "name"), "UnRegisterPlugin");
    EXPECT_EQ(RegistrationCount(), 0u);
}

TEST_F(ModuleEntryWithManager, DoesNothingForThreadsAndUnknownReasons) {
    for (const DWORD reason : {DWORD{DLL_THREAD_ATTACH}, DWORD{DLL_THREAD_DETACH}, 4ul, ~0ul}) {
        EXPECT_EQ(CallsOf(reason, TRUE), Names{});
    }
    EXPECT_EQ(RegistrationCount(), 0u);
}

// --- The manager has to be found ---

const Names kWithLoadedManager{"GetModuleHandleW", "GetModuleFileNameW", "PathCchRemoveFileSpec",
                               "LoadLibraryW",     "GetProcAddress",     "FreeLibrary"};

TEST_F(ModuleEntry, LoadsTheManagerBesideTheExecutableForTheCallOnly) {
    ASSERT_FALSE(ManagerIsLoaded());
    EXPECT_EQ(Attach(TRUE), kWithLoadedManager);
    EXPECT_FALSE(ManagerIsLoaded());

    EXPECT_EQ(Argument("GetModuleFileNameW", "module"), "null");
    EXPECT_EQ(Argument("GetModuleFileNameW", "capacity"), "260");
    EXPECT_EQ(Argument("PathCchRemoveFileSpec", "capacity"), "260");
    EXPECT_EQ(Argument("LoadLibraryW", "name"),
              simulation::ToUtf8(test_support::ProgramFolder()) + "\\ZedPluginsManager.dll");
    EXPECT_EQ(Argument("GetProcAddress", "name"), "RegisterPlugin");
    EXPECT_EQ(Argument("FreeLibrary", "module"), Argument("GetProcAddress", "module"));

    EXPECT_EQ(Detach(), kWithLoadedManager);
    EXPECT_EQ(Argument("GetProcAddress", "name"), "UnRegisterPlugin");
    EXPECT_FALSE(ManagerIsLoaded());
}

TEST_F(ModuleEntry, UsesTheFolderOfATruncatedPathAsItComes) {
    // The path is cut to "C:\xxx...", of which "C:\" is the folder.
    world.faults.FailCall("GetModuleFileNameW", 1, 0, simulation::FaultVariant::ShortSize);
    EXPECT_EQ(Attach(FALSE), Names(kWithLoadedManager.begin(), kWithLoadedManager.begin() + 4));
    EXPECT_EQ(Argument("LoadLibraryW", "name"), "C:\\\\ZedPluginsManager.dll");
}

bool bufferWasZero = false;

DWORD WINAPI LookAtTheBuffer(HMODULE, wchar_t* path, DWORD capacity) {
    bufferWasZero = std::all_of(path, path + capacity, [](wchar_t unit) { return unit == 0; });
    return 0;
}

TEST(ModuleEntryPath, IsReadIntoABufferOfZeroes) {
    const unit_tests::ImportOverride<decltype(::GetModuleFileNameW)> handMade("GetModuleFileNameW",
                                                                              LookAtTheBuffer);
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    EXPECT_TRUE(bufferWasZero);
}

}  // namespace
