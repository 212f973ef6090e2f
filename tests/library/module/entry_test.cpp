// The entry point of the built library in processes of their own, with various managers around.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/temp_folder.h"

namespace {

using test_support::ProgramFolder;
using Lines = std::vector<std::string>;

constexpr char kRegistered[] = "RegisterPlugin 6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8";
constexpr char kWithdrawn[] = "UnRegisterPlugin 6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8";
constexpr char kRefused[] = "not loaded, error 1114";  // ERROR_DLL_INIT_FAILED

std::wstring Manager(const std::wstring& variant) {
    return ProgramFolder() + L"\\variants\\" + variant + L"\\ZedPluginsManager.dll";
}

class EntryInAProcess : public testing::Test {
protected:
    /// The program's folder gets the manager of this variant.
    void PutManagerBesideProgram(const std::wstring& variant) { folder.Take(Manager(variant)); }

    Lines Run(const std::wstring& ending, const std::wstring& preloadedVariant = {}) {
        std::vector<std::wstring> arguments{ProgramFolder(), ending};
        if (!preloadedVariant.empty()) {
            arguments.push_back(Manager(preloadedVariant));
        }
        const test_support::ChildResult result = test_support::RunChild(program, arguments);
        EXPECT_TRUE(result.finished);
        EXPECT_EQ(result.exitCode, 42u);
        Lines lines;
        std::istringstream output(result.output);
        for (std::string line; std::getline(output, line);) {
            if (!line.empty() && line.back() == '\r') {
                line.pop_back();
            }
            lines.push_back(line);
        }
        return lines;
    }

    const test_support::TempFolder folder;
    const std::wstring program = folder.Take(ProgramFolder() + L"\\entry_probe.exe");
};

TEST_F(EntryInAProcess, UsesTheManagerBesideTheExecutableAndKeepsNoReference) {
    PutManagerBesideProgram(L"recording_manager");
    EXPECT_EQ(Run(L"unload"), (Lines{kRegistered, "loaded", "manager is not loaded", kWithdrawn,
                                     "unloaded", "manager is not loaded"}));
}

TEST_F(EntryInAProcess, UsesTheManagerThatTheHostHasLoaded) {
    EXPECT_EQ(Run(L"unload", L"recording_manager"),
              (Lines{kRegistered, "loaded", "manager is loaded", kWithdrawn, "unloaded",
                     "manager is loaded", "manager is not loaded"}));
}

TEST_F(EntryInAProcess, PrefersTheLoadedManagerToTheOneBesideTheExecutable) {
    PutManagerBesideProgram(L"manager_without_register");
    EXPECT_EQ(Run(L"unload", L"recording_manager").at(1), "loaded");
}

TEST_F(EntryInAProcess, RefusesToLoadWithoutAManager) {
    EXPECT_EQ(Run(L"unload"), (Lines{kRefused, "manager is not loaded"}));
}

TEST_F(EntryInAProcess, RefusesToLoadWhenTheManagerLacksRegisterPluginAndReleasesIt) {
    PutManagerBesideProgram(L"manager_without_register");
    EXPECT_EQ(Run(L"unload"), (Lines{kRefused, "manager is not loaded"}));
}

TEST_F(EntryInAProcess, LeavesALoadedManagerThatLacksRegisterPluginLoaded) {
    EXPECT_EQ(Run(L"unload", L"manager_without_register"),
              (Lines{kRefused, "manager is loaded", "manager is not loaded"}));
}

TEST_F(EntryInAProcess, UnloadsWhenTheManagerLacksUnRegisterPlugin) {
    PutManagerBesideProgram(L"manager_without_unregister");
    EXPECT_EQ(Run(L"unload"),
              (Lines{"loaded", "manager is not loaded", "unloaded", "manager is not loaded"}));
}

TEST_F(EntryInAProcess, WithdrawsWhenTheProcessEnds) {
    EXPECT_EQ(Run(L"exit", L"recording_manager"),
              (Lines{kRegistered, "loaded", "manager is loaded", kWithdrawn}));
}

TEST_F(EntryInAProcess, LetsTheProcessEndWithItsExitCodeWhateverTheManagerLacks) {
    PutManagerBesideProgram(L"manager_without_unregister");
    EXPECT_EQ(Run(L"exit"), (Lines{"loaded", "manager is not loaded"}));
}

}  // namespace
