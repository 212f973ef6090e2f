#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "library/standins/temporary_file.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "support/child_process.h"

namespace {

using standins_test::StreamCapture;

class PluginsManager : public testing::Test {
protected:
    void SetUp() override { ZedPluginsManager_Reset(); }
    void TearDown() override { ZedPluginsManager_Reset(); }

    PluginRegistrationInfo first = {"first", nullptr, "", nullptr};
    PluginRegistrationInfo second = {"second", nullptr, "", nullptr};
};

TEST_F(PluginsManager, KeepsRegistrationsByAddressInTheirOrder) {
    RegisterPlugin(&first);
    RegisterPlugin(&second);
    EXPECT_EQ(ZedPluginsManager_Count(), 2u);
    EXPECT_EQ(ZedPluginsManager_At(0), &first);
    EXPECT_EQ(ZedPluginsManager_At(1), &second);
    EXPECT_EQ(ZedPluginsManager_At(2), nullptr);

    UnRegisterPlugin(&first);
    EXPECT_EQ(ZedPluginsManager_Count(), 1u);
    EXPECT_EQ(ZedPluginsManager_At(0), &second);
    UnRegisterPlugin(&second);
    EXPECT_EQ(ZedPluginsManager_Count(), 0u);
    EXPECT_EQ(ZedPluginsManager_At(0), nullptr);
}

TEST_F(PluginsManager, HandsOutTheFactory) {
    struct Plugin : ZedPlugin {
        bool Initialize() override { return true; }
        bool Uninitialize() override { return true; }
        bool Start() override { return true; }
        bool Stop() override { return false; }
    };
    first.factory = [] { return std::make_shared<Plugin>(); };
    RegisterPlugin(&first);
    const std::shared_ptr<ZedPlugin> plugin = ZedPluginsManager_At(0)->factory();
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->Start());
    EXPECT_FALSE(plugin->Stop());
}

TEST_F(PluginsManager, WarnsOfASecondRegistrationAndKeepsOne) {
    RegisterPlugin(&first);
    const StreamCapture errors(STD_ERROR_HANDLE);
    RegisterPlugin(&first);
    EXPECT_EQ(errors.Bytes(),
              "ZedPluginsManager: RegisterPlugin got a record that is registered already; "
              "ignored\n");
    EXPECT_EQ(ZedPluginsManager_Count(), 1u);
}

TEST_F(PluginsManager, WarnsOfAnUnknownWithdrawalAndKeepsTheOthers) {
    RegisterPlugin(&first);
    const StreamCapture errors(STD_ERROR_HANDLE);
    UnRegisterPlugin(&second);
    EXPECT_EQ(errors.Bytes(),
              "ZedPluginsManager: UnRegisterPlugin got a record that is not registered; "
              "ignored\n");
    EXPECT_EQ(ZedPluginsManager_Count(), 1u);
}

TEST_F(PluginsManager, WarnsOfANullRegistration) {
    const StreamCapture errors(STD_ERROR_HANDLE);
    RegisterPlugin(nullptr);
    EXPECT_NE(errors.Bytes().find("null pointer"), std::string::npos) << errors.Bytes();
    EXPECT_EQ(ZedPluginsManager_Count(), 0u);
}

TEST_F(PluginsManager, SaysNothingOnStandardErrorWhenAllIsWell) {
    const StreamCapture errors(STD_ERROR_HANDLE);
    RegisterPlugin(&first);
    UnRegisterPlugin(&first);
    EXPECT_EQ(errors.Bytes(), "");
}

TEST_F(PluginsManager, TellsItsObserverOfEachCall) {
    using Calls = std::vector<std::pair<std::string, const PluginRegistrationInfo*>>;
    Calls calls;
    ZedPluginsManager_SetObserver(
        [](void* context, const char* operation, const PluginRegistrationInfo* registration) {
            static_cast<Calls*>(context)->emplace_back(operation, registration);
        },
        &calls);
    RegisterPlugin(&first);
    UnRegisterPlugin(&first);
    const Calls expected = {{"RegisterPlugin", &first}, {"UnRegisterPlugin", &first}};
    EXPECT_EQ(calls, expected);
}

/// Loads a manager from the folder of variants beside this program and looks its exports up.
std::pair<bool, bool> ExportsOfVariant(const std::wstring& variant) {
    const std::wstring path =
        test_support::ProgramFolder() + L"\\variants\\" + variant + L"\\ZedPluginsManager.dll";
    const HMODULE library = LoadLibraryW(path.c_str());
    EXPECT_NE(library, nullptr) << "error " << GetLastError();
    if (library == nullptr) {
        return {};
    }
    const std::pair<bool, bool> exports = {
        GetProcAddress(library, "RegisterPlugin") != nullptr,
        GetProcAddress(library, "UnRegisterPlugin") != nullptr,
    };
    FreeLibrary(library);
    return exports;
}

TEST(PluginsManagerVariants, LackOneExportEach) {
    EXPECT_EQ(ExportsOfVariant(L"manager_without_register"), std::make_pair(false, true));
    EXPECT_EQ(ExportsOfVariant(L"manager_without_unregister"), std::make_pair(true, false));
}

TEST(PluginsManagerExports, AreUndecorated) {
    const HMODULE library = GetModuleHandleW(L"ZedPluginsManager.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(GetProcAddress(library, "RegisterPlugin"), nullptr);
    EXPECT_NE(GetProcAddress(library, "UnRegisterPlugin"), nullptr);
}

}  // namespace
