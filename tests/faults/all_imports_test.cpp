// That no function is forgotten which a new line of the plug-in may call.
#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <set>

#include "faults/fault_table.h"
#include "simulation/import_redirection.h"
#include "support/plugin_module.h"
#include "support/runtime_waits.h"

namespace {

using namespace faults_test;

/// The compiler's runtime calls the first for its own purposes as well; what the plug-in itself
/// calls there and in the runtime is seen by the fakes. The suite's libraries are seen by their
/// control headers.
bool IsSpokenForElsewhere(const std::string& library) {
    static const std::set<std::string> libraries{
        "KERNEL32.dll", "BoardInfo.dll", "ConsentStore.dll", "EditionAdapt.dll",
        "FileKit.dll",  "LogKit.dll",    "WmiKit.dll",       "xeevent.dll"};
    return libraries.count(library) != 0 || test_support::IsRuntimeLibrary(library);
}

TEST(Imports, AreAllMadeToFailOrHaveAReasonNotToBe) {
    std::vector<FaultGroup> groups;
    for (const std::string& name : GroupNames()) {
        groups.emplace_back(name);
    }
    const Json notTried = LoadNotTried();
    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
    std::size_t checked = 0;
    for (const simulation::Import& import : simulation::ImportsOf(module.Handle())) {
        if (IsSpokenForElsewhere(import.library)) {
            continue;
        }
        ++checked;
        const bool tried = std::any_of(groups.begin(), groups.end(), [&](const FaultGroup& group) {
            return group.Names(import.name);
        });
        EXPECT_NE(tried, notTried.contains(import.name))
            << import.name << " of " << import.library
            << " needs rows in expected/ or a reason in not_tried.json, and not both";
    }
    EXPECT_GE(checked, 48u);
}

}  // namespace
