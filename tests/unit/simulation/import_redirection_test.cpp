#include "simulation/import_redirection.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace simulation {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;

DWORD WINAPI FirstReplacement() { return 1111; }
DWORD WINAPI SecondReplacement() { return 2222; }

HMODULE ThisProgram() { return GetModuleHandleW(nullptr); }

TEST(ImportRedirection, PutsTheOriginalBackAfterTwoRedirectionsOfOneImport) {
    const DWORD processId = GetCurrentProcessId();
    {
        ImportRedirection redirection(ThisProgram());
        const auto real = redirection.Redirect<decltype(::GetCurrentProcessId)>(
            "GetCurrentProcessId", FirstReplacement);
        EXPECT_EQ(GetCurrentProcessId(), 1111u);
        EXPECT_EQ(real(), processId);
        redirection.Redirect<decltype(::GetCurrentProcessId)>("GetCurrentProcessId",
                                                              SecondReplacement);
        EXPECT_EQ(GetCurrentProcessId(), 2222u);
    }
    EXPECT_EQ(GetCurrentProcessId(), processId);
}

/// The section that holds this program's import table.
MEMORY_BASIC_INFORMATION ImportSection() {
    auto* const base = reinterpret_cast<BYTE*>(ThisProgram());
    const auto* dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dosHeader->e_lfanew);
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(
        base + headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress,
        &region, sizeof(region));
    return region;
}

std::vector<DWORD> PageProtections(const MEMORY_BASIC_INFORMATION& section) {
    constexpr std::size_t kPage = 4096;
    std::vector<DWORD> protections;
    for (std::size_t offset = 0; offset < section.RegionSize; offset += kPage) {
        MEMORY_BASIC_INFORMATION page{};
        VirtualQuery(static_cast<const BYTE*>(section.BaseAddress) + offset, &page, sizeof(page));
        protections.push_back(page.Protect);
    }
    return protections;
}

TEST(ImportRedirection, WritesToATableThatIsReadOnlyAndLeavesItSo) {
    const MEMORY_BASIC_INFORMATION section = ImportSection();
    DWORD protection = 0;
    ASSERT_TRUE(
        VirtualProtect(section.BaseAddress, section.RegionSize, PAGE_READONLY, &protection));
    {
        ImportRedirection redirection(ThisProgram());
        redirection.Redirect<decltype(::GetCurrentProcessId)>("GetCurrentProcessId",
                                                              FirstReplacement);
        EXPECT_EQ(GetCurrentProcessId(), 1111u);
        EXPECT_THAT(PageProtections(section), Each(PAGE_READONLY));
    }
    EXPECT_THAT(PageProtections(section), Each(PAGE_READONLY));
    VirtualProtect(section.BaseAddress, section.RegionSize, protection, &protection);
}

TEST(ImportRedirection, DoesNotTouchOtherModules) {
    const auto inKernel =
        reinterpret_cast<decltype(::GetCurrentProcessId)*>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetCurrentProcessId")));
    const DWORD processId = inKernel();
    ImportRedirection redirection(ThisProgram());
    redirection.Redirect<decltype(::GetCurrentProcessId)>("GetCurrentProcessId", FirstReplacement);
    EXPECT_EQ(inKernel(), processId);
}

TEST(ImportRedirection, RefusesAnUnknownImportNamingItAndTheModule) {
    ImportRedirection redirection(ThisProgram());
    try {
        redirection.Redirect("NoSuchFunctionW", reinterpret_cast<void*>(FirstReplacement));
        FAIL() << "an unknown import was accepted";
    } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(),
                    AllOf(HasSubstr("\"NoSuchFunctionW\""), HasSubstr("simulation_test.exe")));
    }
}

TEST(ImportRedirection, PassesOverImportsThatTheModuleLacks) {
    decltype(::GetCurrentProcessId)* real = GetCurrentProcessId;
    decltype(::GetCurrentProcessId)* none = GetCurrentProcessId;
    const DWORD processId = GetCurrentProcessId();
    ImportRedirection redirection(ThisProgram());
    redirection.RedirectImported({{"NoSuchFunctionW", FirstReplacement, &none},
                                  {"GetCurrentProcessId", SecondReplacement, &real}});
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(real(), processId);
    EXPECT_EQ(GetCurrentProcessId(), 2222u);
}

TEST(ImportsOf, ListsLibraryAndNameOfEachImport) {
    std::vector<std::string> imports;
    for (const Import& import : ImportsOf(ThisProgram())) {
        imports.push_back(import.library + "!" + import.name);
    }
    EXPECT_THAT(imports, Contains("KERNEL32.dll!GetCurrentProcessId"));
}

}  // namespace
}  // namespace simulation
