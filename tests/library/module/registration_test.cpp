// How the built library announces itself to a manager that the host has loaded.
#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/plugin_module.h"

namespace {

using Call = std::pair<std::string, const void*>;

class Registration : public testing::Test {
protected:
    Registration() { manager.SetObserver(&Observe, this); }
    ~Registration() override { manager.SetObserver(nullptr, nullptr); }

    static void Observe(void* context, const char* operation,
                        const PluginRegistrationInfo* registration) {
        static_cast<Registration*>(context)->calls.emplace_back(operation, registration);
    }

    const test_support::PluginsManager manager;
    std::vector<Call> calls;
};

TEST_F(Registration, HappensOncePerLoadAndIsWithdrawnOncePerUnload) {
    const void* record = nullptr;
    {
        const test_support::PluginModule plugin;
        record = manager.At(0);
        EXPECT_EQ(manager.Count(), 1u);
        EXPECT_EQ(calls, (std::vector<Call>{{"RegisterPlugin", record}}));
    }
    EXPECT_EQ(manager.Count(), 0u);
    EXPECT_EQ(calls, (std::vector<Call>{{"RegisterPlugin", record}, {"UnRegisterPlugin", record}}));
}

TEST_F(Registration, IsRepeatedAtEachLoad) {
    for (int i = 0; i < 5; ++i) {
        const test_support::PluginModule plugin;
        EXPECT_EQ(manager.Count(), 1u);
    }
    EXPECT_EQ(manager.Count(), 0u);
    EXPECT_EQ(calls.size(), 10u);
    EXPECT_FALSE(test_support::IsLoaded(L"TallyportPlugin.dll"));
}

TEST_F(Registration, HandsOverARecordThatLivesInTheLibrary) {
    const test_support::PluginModule plugin;
    MEMORY_BASIC_INFORMATION memory{};
    ASSERT_NE(VirtualQuery(manager.At(0), &memory, sizeof(memory)), 0u);
    EXPECT_EQ(memory.AllocationBase, plugin.Handle());
}

TEST_F(Registration, HandsOverIdentifierFactoryAndTwoEmptyMembers) {
    const test_support::PluginModule plugin;
    const PluginRegistrationInfo& record = *manager.At(0);
    EXPECT_EQ(record.id, "6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8");
    EXPECT_TRUE(record.factory);
    EXPECT_EQ(record.reservedText, "");
    EXPECT_FALSE(record.reservedCallback);
}

TEST_F(Registration, OffersAFactoryThatMakesANewObjectForItsCallerOnly) {
    const test_support::PluginModule plugin;
    const std::shared_ptr<ZedPlugin> first = plugin.Create(manager);
    const std::shared_ptr<ZedPlugin> second = plugin.Create(manager);
    EXPECT_EQ(first.use_count(), 1);
    EXPECT_EQ(second.use_count(), 1);
    EXPECT_NE(first, second);
    EXPECT_TRUE(first->Initialize());
    EXPECT_TRUE(first->Uninitialize());
}

TEST_F(Registration, OffersAFactoryForAnyThread) {
    const test_support::PluginModule plugin;
    std::set<std::shared_ptr<ZedPlugin>> objects;
    for (int i = 0; i < 4; ++i) {
        std::thread([&] { objects.insert(plugin.Create(manager)); }).join();
    }
    EXPECT_EQ(objects.size(), 4u);
}

TEST_F(Registration, IsLeftAloneByThreads) {
    const test_support::PluginModule plugin;
    for (int i = 0; i < 3; ++i) {
        std::thread([] {}).join();
    }
    EXPECT_EQ(calls.size(), 1u);
}

TEST(ManagerReference, IsNeitherTakenNorGivenBackByALoad) {
    test_support::PluginsManager manager;
    const test_support::PluginModule plugin;
    ASSERT_TRUE(test_support::IsLoaded(L"ZedPluginsManager.dll"));
    manager.Release();  // The only reference there may be.
    EXPECT_FALSE(test_support::IsLoaded(L"ZedPluginsManager.dll"));
}

TEST(ManagerReference, IsNeitherTakenNorGivenBackByAnUnload) {
    test_support::PluginsManager manager;
    { const test_support::PluginModule plugin; }
    ASSERT_TRUE(test_support::IsLoaded(L"ZedPluginsManager.dll"));
    manager.Release();
    EXPECT_FALSE(test_support::IsLoaded(L"ZedPluginsManager.dll"));
}

}  // namespace
