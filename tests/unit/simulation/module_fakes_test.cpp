#include "simulation/fakes/modules.h"

#include <gmock/gmock.h>
#include <pathcch.h>

#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ModuleFakes : public ::testing::Test {
protected:
    SimulatedMachine machine{GetModuleHandleW(nullptr), Machine(), {InstallModuleFakes}};
    World& world = machine.world();
};

TEST_F(ModuleFakes, LetTheSystemLoadAndJournalIt) {
    const HMODULE library = LoadLibraryW(L"version.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(GetProcAddress(library, "VerQueryValueW"), nullptr);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::ModuleReference), 1u);
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    EXPECT_THAT(world.journal.Names(),
                ElementsAre("LoadLibraryW", "GetProcAddress", "FreeLibrary"));
    EXPECT_EQ(world.journal.Calls("LoadLibraryW")[0]["name"], "version.dll");
    EXPECT_EQ(world.journal.Calls("GetProcAddress")[0]["name"], "VerQueryValueW");
}

TEST_F(ModuleFakes, KeepTheSystemsOwnError) {
    EXPECT_EQ(LoadLibraryW(L"no_such_library.dll"), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(world.journal.Entries()[0].error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(ModuleFakes, FailAsPlanned) {
    world.faults.FailCall("GetModuleHandleW", 1, 126);
    world.faults.FailCall("LoadLibraryW", 1, 5);
    EXPECT_EQ(GetModuleHandleW(nullptr), nullptr);
    EXPECT_EQ(GetLastError(), 126u);
    EXPECT_NE(GetModuleHandleW(nullptr), nullptr);
    EXPECT_EQ(LoadLibraryW(L"version.dll"), nullptr);
    EXPECT_EQ(GetLastError(), 5u);
    EXPECT_TRUE(world.faults.Missed().empty());
}

TEST_F(ModuleFakes, CutAPathThatIsTooLong) {
    wchar_t path[MAX_PATH] = {};
    world.faults.FailCall("GetModuleFileNameW", 1, 0);
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, MAX_PATH), 0u);
    world.faults.FailCall("GetModuleFileNameW", 1, 0, FaultVariant::ShortSize);
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, MAX_PATH), static_cast<DWORD>(MAX_PATH));
    EXPECT_EQ(wcsnlen(path, MAX_PATH), MAX_PATH - 1u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_LT(GetModuleFileNameW(nullptr, path, MAX_PATH), static_cast<DWORD>(MAX_PATH));
    EXPECT_THAT(std::wstring(path), HasSubstr(L"simulation_test.exe"));
}

TEST_F(ModuleFakes, AnswerPlannedPathResults) {
    wchar_t path[] = L"C:\\suite\\host.exe";
    world.faults.FailCall("PathCchRemoveFileSpec", 1, static_cast<DWORD>(E_INVALIDARG));
    EXPECT_EQ(PathCchRemoveFileSpec(path, 20), E_INVALIDARG);
    world.faults.FailCall("PathCchRemoveFileSpec", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_EQ(PathCchRemoveFileSpec(path, 20), S_FALSE);
    EXPECT_EQ(PathCchRemoveFileSpec(path, 20), S_OK);
    EXPECT_STREQ(path, L"C:\\suite");
    EXPECT_EQ(world.journal.Calls("PathCchRemoveFileSpec")[2]["path"], "C:\\suite\\host.exe");
}

TEST_F(ModuleFakes, CountReferencesTakenByAddress) {
    HMODULE module = nullptr;
    const auto* address = reinterpret_cast<const wchar_t*>(&InstallModuleFakes);
    ASSERT_TRUE(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, address, &module));
    EXPECT_EQ(module, GetModuleHandleW(nullptr));
    EXPECT_FALSE(world.ledger.Balanced());
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    ASSERT_TRUE(GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        address, &module));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

DWORD WINAPI LeaveWithModule(void*) {
    HMODULE module = nullptr;
    GetModuleHandleExW(0, nullptr, &module);
    FreeLibraryAndExitThread(module, 42);
}

TEST_F(ModuleFakes, JournalAThreadThatLeavesWithItsReference) {
    const HANDLE thread = CreateThread(nullptr, 0, LeaveWithModule, nullptr, 0, nullptr);
    ASSERT_EQ(WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    DWORD exitCode = 0;
    GetExitCodeThread(thread, &exitCode);
    CloseHandle(thread);
    EXPECT_EQ(exitCode, 42u);
    ASSERT_EQ(world.journal.Count("FreeLibraryAndExitThread"), 1u);
    EXPECT_TRUE(world.journal.Calls("FreeLibraryAndExitThread")[0].finished);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

}  // namespace
}  // namespace simulation
