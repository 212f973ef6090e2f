// The library's entry point, linked into the test program so that its calls can be watched and
// made to fail. What it does in the built library is in the library tests.
#include <gtest/gtest.h>
#include <windows.h>
// windows.h has to come first.
#include <winerror.h>

#include <algorithm>
#include <string>
#include <vector>

#include "plugin/plugin_registration.h"
#include "simulation/call_text.h"
#include "simulation/fakes/modules.h"
#include "simulation/simulated_machine.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "support/child_process.h"
#include "util/scoped_handle.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace {

using simulation::FaultVariant;
using Names = std::vector<std::string>;

class ModuleEntry : public testing::Test {
protected:
    ~ModuleEntry() override {
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
        EXPECT_TRUE(world.faults.Missed().empty());
    }

    /// The calls that one entry makes.
    Names CallsOf(DWORD reason, BOOL expectedResult, void* reserved = nullptr) {
        world.journal.Clear();
        EXPECT_EQ(DllMain(program, reason, reserved), expectedResult);
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

const Names kFind{"GetModuleHandleW", "GetModuleFileNameW", "PathCchRemoveFileSpec",
                  "LoadLibraryW"};

Names After(Names first, const Names& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

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

TEST_F(ModuleEntryWithManager, RefusesToLoadWithoutRegisterPlugin) {
    world.faults.FailCall("GetProcAddress", 1, ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(Attach(FALSE), (Names{"GetModuleHandleW", "GetProcAddress"}));
    EXPECT_EQ(RegistrationCount(), 0u);
}

TEST_F(ModuleEntryWithManager, WithdrawsAlsoAtTheEndOfTheProcess) {
    Attach(TRUE);
    int marker = 0;
    EXPECT_EQ(CallsOf(DLL_PROCESS_DETACH, TRUE, &marker),
              (Names{"GetModuleHandleW", "GetProcAddress"}));
    EXPECT_EQ(RegistrationCount(), 0u);
}

TEST_F(ModuleEntryWithManager, DoesNothingForThreads) {
    EXPECT_EQ(CallsOf(DLL_THREAD_ATTACH, TRUE), Names{});
    EXPECT_EQ(CallsOf(DLL_THREAD_DETACH, TRUE), Names{});
    EXPECT_EQ(RegistrationCount(), 0u);
}

// --- The manager has to be found ---

TEST_F(ModuleEntry, LoadsTheManagerBesideTheExecutableForTheCallOnly) {
    ASSERT_FALSE(ManagerIsLoaded());
    EXPECT_EQ(Attach(TRUE), After(kFind, {"GetProcAddress", "FreeLibrary"}));
    EXPECT_FALSE(ManagerIsLoaded());

    EXPECT_EQ(Argument("GetModuleFileNameW", "module"), "null");
    EXPECT_EQ(Argument("GetModuleFileNameW", "capacity"), "260");
    EXPECT_EQ(Argument("PathCchRemoveFileSpec", "capacity"), "260");
    EXPECT_EQ(Argument("LoadLibraryW", "name"),
              simulation::ToUtf8(test_support::ProgramFolder()) + "\\ZedPluginsManager.dll");
    EXPECT_EQ(Argument("GetProcAddress", "name"), "RegisterPlugin");
    EXPECT_EQ(Argument("FreeLibrary", "module"), Argument("GetProcAddress", "module"));
}

TEST_F(ModuleEntry, WithdrawsThroughAManagerThatItLoadsForTheCallOnly) {
    EXPECT_EQ(Detach(), After(kFind, {"GetProcAddress", "FreeLibrary"}));
    EXPECT_EQ(Argument("GetProcAddress", "name"), "UnRegisterPlugin");
    EXPECT_FALSE(ManagerIsLoaded());
}

TEST_F(ModuleEntry, ReleasesTheManagerThatLacksRegisterPlugin) {
    world.faults.FailCall("GetProcAddress", 1, ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(Attach(FALSE), After(kFind, {"GetProcAddress", "FreeLibrary"}));
    EXPECT_FALSE(ManagerIsLoaded());
}

TEST_F(ModuleEntry, ReleasesTheManagerThatLacksUnRegisterPluginAndSucceeds) {
    world.faults.FailCall("GetProcAddress", 1, ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(Detach(), After(kFind, {"GetProcAddress", "FreeLibrary"}));
    EXPECT_FALSE(ManagerIsLoaded());
}

/// What keeps the manager from being found, and how far the search gets.
struct SearchFault {
    const char* function;
    DWORD error;
    FaultVariant variant;
    Names calls;
};

void PrintTo(const SearchFault& fault, std::ostream* stream) { *stream << fault.function; }

class FailingSearch : public ModuleEntry, public testing::WithParamInterface<SearchFault> {
protected:
    FailingSearch() {
        const SearchFault& fault = GetParam();
        world.faults.FailEveryCall(fault.function, fault.error, fault.variant);
    }
};

TEST_P(FailingSearch, MakesTheLoadFail) { EXPECT_EQ(Attach(FALSE), GetParam().calls); }

TEST_P(FailingSearch, IsSilentAtUnload) { EXPECT_EQ(Detach(), GetParam().calls); }

INSTANTIATE_TEST_SUITE_P(
    EachStep, FailingSearch,
    testing::Values(SearchFault{"GetModuleFileNameW", ERROR_ACCESS_DENIED, FaultVariant::Fail,
                                Names(kFind.begin(), kFind.begin() + 2)},
                    SearchFault{"PathCchRemoveFileSpec", static_cast<DWORD>(E_INVALIDARG),
                                FaultVariant::Fail, Names(kFind.begin(), kFind.begin() + 3)},
                    SearchFault{"PathCchRemoveFileSpec", S_FALSE, FaultVariant::SuccessWithNothing,
                                Names(kFind.begin(), kFind.begin() + 3)},
                    SearchFault{"LoadLibraryW", ERROR_MOD_NOT_FOUND, FaultVariant::Fail, kFind}),
    [](const auto& instance) {
        return std::string(instance.param.function) +
               (instance.param.error == S_FALSE ? "RemovesNothing" : "Fails");
    });

TEST_F(ModuleEntry, UsesTheFolderOfATruncatedPathAsItComes) {
    // The path is cut to "C:\xxx...", of which "C:\" is the folder.
    world.faults.FailCall("GetModuleFileNameW", 1, 0, FaultVariant::ShortSize);
    EXPECT_EQ(Attach(FALSE), kFind);
    EXPECT_EQ(Argument("LoadLibraryW", "name"), "C:\\\\ZedPluginsManager.dll");
}

TEST_F(ModuleEntry, RemembersNothingOfTheLoadAtUnload) {
    {
        const ScopedModule manager(
            LoadLibraryW((test_support::ProgramFolder() + L"\\ZedPluginsManager.dll").c_str()));
        EXPECT_EQ(Attach(TRUE), (Names{"GetModuleHandleW", "GetProcAddress"}));
    }
    EXPECT_EQ(Detach(), After(kFind, {"GetProcAddress", "FreeLibrary"}));
}

// --- The buffer for the path ---

bool bufferWasZero = false;

DWORD WINAPI LookAtTheBuffer(HMODULE, wchar_t* path, DWORD capacity) {
    bufferWasZero = std::all_of(path, path + capacity, [](wchar_t unit) { return unit == 0; });
    return 0;
}

TEST(ModuleEntryPath, IsReadIntoABufferOfZeroes) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    redirection.Redirect<decltype(::GetModuleFileNameW)>("GetModuleFileNameW", LookAtTheBuffer);
    bufferWasZero = false;
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    EXPECT_TRUE(bufferWasZero);
}

}  // namespace
