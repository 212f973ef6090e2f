// What the built library offers and needs, read from its image.
#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "library/module/module_image.h"
#include "support/plugin_module.h"

namespace {

using testing::Contains;
using testing::Not;
using testing::UnorderedElementsAre;

#if defined(_MSC_VER)
std::string LimitName(const std::string& constant, bool isSigned) {
    return "?" + constant + "@XeEvent@@2" + (isSigned ? "HB" : "_KB");
}
#else
std::string LimitName(const std::string& constant, bool /*isSigned*/) {
    return "_ZN7XeEvent" + std::to_string(constant.size()) + constant + "E";
}
#endif

class BuiltLibrary : public testing::Test {
protected:
    std::uint64_t Limit(const std::string& constant) const {
        const auto* const value = reinterpret_cast<const std::uint64_t*>(reinterpret_cast<void*>(
            GetProcAddress(module.Handle(), LimitName(constant, false).c_str())));
        return value == nullptr ? 0 : *value;
    }

    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
};

TEST_F(BuiltLibrary, ExportsTheTwoModuleFunctionsAndTheSevenLimitsOnly) {
    EXPECT_THAT(
        module_test::ExportedNames(module.Handle()),
        UnorderedElementsAre("InitializePluginModule", "UninitializePluginModule",
                             LimitName("MAX_KEY_LEN", false), LimitName("MAX_PAIR_NUM", false),
                             LimitName("MAX_PATH_LEN", false), LimitName("MAX_VALUE_LEN", false),
                             LimitName("MAX_FILE_NUM", false), LimitName("MAX_ARR_SIZE", false),
                             LimitName("INVALID_NUM", true)));
}

TEST_F(BuiltLibrary, ExportsTheLimitsWithTheirValues) {
    EXPECT_EQ(Limit("MAX_KEY_LEN"), 32u);
    EXPECT_EQ(Limit("MAX_PAIR_NUM"), 256u);
    EXPECT_EQ(Limit("MAX_PATH_LEN"), 256u);
    EXPECT_EQ(Limit("MAX_VALUE_LEN"), 1024u);
    EXPECT_EQ(Limit("MAX_FILE_NUM"), 10u);
    EXPECT_EQ(Limit("MAX_ARR_SIZE"), 100u);
    const auto* const invalid = reinterpret_cast<const std::int32_t*>(reinterpret_cast<void*>(
        GetProcAddress(module.Handle(), LimitName("INVALID_NUM", true).c_str())));
    ASSERT_NE(invalid, nullptr);
    EXPECT_EQ(*invalid, -1);
}

TEST_F(BuiltLibrary, HasModuleFunctionsThatDoNothing) {
    const auto initialize = reinterpret_cast<bool (*)()>(
        reinterpret_cast<void*>(GetProcAddress(module.Handle(), "InitializePluginModule")));
    const auto uninitialize = reinterpret_cast<void (*)()>(
        reinterpret_cast<void*>(GetProcAddress(module.Handle(), "UninitializePluginModule")));
    ASSERT_NE(initialize, nullptr);
    ASSERT_NE(uninitialize, nullptr);
    EXPECT_TRUE(initialize());
    uninitialize();
    EXPECT_TRUE(initialize());
    EXPECT_EQ(manager.Count(), 1u);
}

TEST_F(BuiltLibrary, FindsTheManagerAtRunTimeOnly) {
    EXPECT_THAT(module_test::ImportedLibraries(module.Handle()),
                Not(Contains("zedpluginsmanager.dll")));
}

TEST_F(BuiltLibrary, LinksTheSuitesLibraries) {
    const std::vector<std::string> libraries = module_test::ImportedLibraries(module.Handle());
    for (const char* library : {"logkit.dll", "xeevent.dll", "filekit.dll", "boardinfo.dll",
                                "wmikit.dll", "consentstore.dll", "editionadapt.dll"}) {
        EXPECT_THAT(libraries, Contains(library));
    }
}

TEST_F(BuiltLibrary, CarriesAVersionResource) {
    wchar_t path[MAX_PATH] = {};
    ASSERT_NE(GetModuleFileNameW(module.Handle(), path, MAX_PATH), 0u);
    std::vector<BYTE> data(GetFileVersionInfoSizeW(path, nullptr));
    ASSERT_FALSE(data.empty());
    ASSERT_TRUE(GetFileVersionInfoW(path, 0, static_cast<DWORD>(data.size()), data.data()));

    void* fixed = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueW(data.data(), L"\\", &fixed, &size));
    const auto* const info = static_cast<const VS_FIXEDFILEINFO*>(fixed);
    EXPECT_EQ(info->dwProductVersionMS,
              DWORD{TALLYPORT_VERSION_MAJOR} << 16 | TALLYPORT_VERSION_MINOR);
    EXPECT_EQ(info->dwFileVersionMS,
              DWORD{TALLYPORT_VERSION_MAJOR} << 16 | TALLYPORT_VERSION_MINOR);
    EXPECT_EQ(info->dwFileType, DWORD{VFT_DLL});

    void* name = nullptr;
    ASSERT_TRUE(
        VerQueryValueW(data.data(), L"\\StringFileInfo\\040904B0\\OriginalFilename", &name, &size));
    EXPECT_STREQ(static_cast<const wchar_t*>(name), L"TallyportPlugin.dll");
}

}  // namespace
