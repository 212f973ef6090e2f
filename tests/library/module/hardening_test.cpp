// What the built library does to make an attack on its host harder, read from its image.
#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "library/module/module_image.h"
#include "simulation/import_redirection.h"
#include "support/plugin_module.h"
#include "support/runtime_waits.h"

namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

class HardenedLibrary : public testing::Test {
protected:
    bool HasProtection(WORD protection) const {
        return (module_test::ImageHeaders(module.Handle()).OptionalHeader.DllCharacteristics &
                protection) != 0;
    }

    /// Whether code or constants hold the text.
    bool HoldsInReadOnlyMemory(std::string_view text) const {
        for (const IMAGE_SECTION_HEADER& section : module_test::Sections(module.Handle())) {
            if ((section.Characteristics & IMAGE_SCN_MEM_WRITE) == 0 &&
                module_test::Contents(module.Handle(), section).find(text) !=
                    std::string_view::npos) {
                return true;
            }
        }
        return false;
    }

    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
};

TEST_F(HardenedLibrary, IsA64BitLibrary) {
    const IMAGE_FILE_HEADER& header = module_test::ImageHeaders(module.Handle()).FileHeader;
    EXPECT_EQ(header.Machine, IMAGE_FILE_MACHINE_AMD64);
    EXPECT_NE(header.Characteristics & IMAGE_FILE_DLL, 0);
}

TEST_F(HardenedLibrary, IsLoadedAtARandomAddressAndItsDataCannotBeExecuted) {
    EXPECT_TRUE(HasProtection(IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE));
    EXPECT_TRUE(HasProtection(IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA));
    // Without relocations the loader cannot move it, whatever the flags say.
    const IMAGE_NT_HEADERS& headers = module_test::ImageHeaders(module.Handle());
    EXPECT_EQ(headers.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED, 0);
    EXPECT_NE(headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0u);
    EXPECT_TRUE(HasProtection(IMAGE_DLLCHARACTERISTICS_NX_COMPAT));
}

TEST_F(HardenedLibrary, HasNoSectionThatIsBothWritableAndExecutable) {
    constexpr DWORD kBoth = IMAGE_SCN_MEM_WRITE | IMAGE_SCN_MEM_EXECUTE;
    bool hasCode = false;
    for (const IMAGE_SECTION_HEADER& section : module_test::Sections(module.Handle())) {
        EXPECT_NE(section.Characteristics & kBoth, kBoth)
            << std::string(reinterpret_cast<const char*>(section.Name), 8);
        hasCode = hasCode || (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
    }
    EXPECT_TRUE(hasCode);
}

TEST_F(HardenedLibrary, ImportsEverythingByName) {
    EXPECT_EQ(module_test::CountOfImportsByOrdinal(module.Handle()), 0u);
    EXPECT_FALSE(simulation::ImportsOf(module.Handle()).empty());
}

TEST_F(HardenedLibrary, ImportsFromTheSystemAndTheSuiteOnly) {
    // No other library of the compiler: it would have to travel along, and could be replaced on the
    // way.
    std::vector<std::string> imported = module_test::ImportedLibraries(module.Handle());
    imported.erase(std::remove_if(imported.begin(), imported.end(), test_support::IsRuntimeLibrary),
                   imported.end());
    const std::vector<std::string> allowed = {"advapi32.dll",     "api-ms-win-core-path-l1-1-0.dll",
                                              "boardinfo.dll",    "cfgmgr32.dll",
                                              "consentstore.dll", "editionadapt.dll",
                                              "filekit.dll",      "hid.dll",
                                              "kernel32.dll",     "logkit.dll",
                                              "secur32.dll",      "setupapi.dll",
                                              "user32.dll",       "version.dll",
                                              "winspool.drv",     "wmikit.dll",
                                              "wtsapi32.dll",     "xeevent.dll"};
    EXPECT_THAT(allowed, IsSupersetOf(imported));
}

TEST_F(HardenedLibrary, LoadsLibrariesThroughOneFunctionOnly) {
    // Its one caller passes a full path; see the test of the calls themselves.
    std::set<std::string> loaders;
    for (const simulation::Import& import : simulation::ImportsOf(module.Handle())) {
        if (import.name.rfind("LoadLibrary", 0) == 0 || import.name.rfind("LdrLoad", 0) == 0 ||
            import.name == "LoadModule" || import.name == "LoadPackagedLibrary") {
            loaders.insert(import.name);
        }
    }
    EXPECT_THAT(loaders, ElementsAre("LoadLibraryW"));
}

#if defined(__GNUC__)
TEST_F(HardenedLibrary, ChecksItsStackFrames) {
    // The text of the routine that a damaged frame ends in. It is linked, from the compiler's
    // static library, only into what calls it: code that was compiled with the protector.
    EXPECT_TRUE(HoldsInReadOnlyMemory("*** stack smashing detected ***"));
}
#endif

}  // namespace
