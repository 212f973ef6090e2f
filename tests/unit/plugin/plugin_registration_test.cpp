#include "plugin/plugin_registration.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include "plugin/tallyport_plugin.h"
#include "simulation/import_redirection.h"

namespace {

template <class Member>
std::ptrdiff_t OffsetInRecord(const Member& member) {
    return reinterpret_cast<const char*>(&member) -
           reinterpret_cast<const char*>(&pluginRegistration);
}

TEST(RegistrationRecord, HoldsTheIdentifier) {
    EXPECT_EQ(pluginRegistration.id, "6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8");
}

TEST(RegistrationRecord, HoldsCreatePluginItselfAsFactory) {
    const auto* const function =
        pluginRegistration.factory.target<std::shared_ptr<ZedPlugin> (*)()>();
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(*function, &CreatePlugin);
}

TEST(RegistrationRecord, LeavesItsLastTwoMembersEmpty) {
    EXPECT_TRUE(pluginRegistration.reservedText.empty());
    EXPECT_FALSE(pluginRegistration.reservedCallback);
}

TEST(RegistrationRecord, HasItsMembersInTheManagersOrderWithNothingInBetween) {
    using Text = decltype(pluginRegistration.id);
    using Factory = decltype(pluginRegistration.factory);
    EXPECT_EQ(OffsetInRecord(pluginRegistration.id), 0);
    EXPECT_EQ(OffsetInRecord(pluginRegistration.factory), std::ptrdiff_t{sizeof(Text)});
    EXPECT_EQ(OffsetInRecord(pluginRegistration.reservedText),
              std::ptrdiff_t{sizeof(Text) + sizeof(Factory)});
    EXPECT_EQ(OffsetInRecord(pluginRegistration.reservedCallback),
              std::ptrdiff_t{2 * sizeof(Text) + sizeof(Factory)});
    EXPECT_EQ(sizeof(pluginRegistration), 2 * sizeof(Text) + 2 * sizeof(Factory));
}

TEST(RegistrationRecord, HasANarrowTextAndACallbackWithoutArgumentsAsItsLastMembers) {
    static_assert(std::is_same_v<decltype(PluginRegistrationInfo::reservedText), std::string>);
    static_assert(
        std::is_same_v<decltype(PluginRegistrationInfo::reservedCallback), std::function<void()>>);
}

TEST(CreatePluginFunction, GivesTheCallerTheOnlyReference) {
    const std::shared_ptr<ZedPlugin> plugin = CreatePlugin();
    EXPECT_EQ(plugin.use_count(), 1);
}

TEST(CreatePluginFunction, MakesANewObjectAtEachCall) {
    const std::shared_ptr<ZedPlugin> first = CreatePlugin();
    const std::shared_ptr<ZedPlugin> second = CreatePlugin();
    EXPECT_NE(first, second);
    EXPECT_EQ(first.use_count(), 1);
}

DWORD countingThread = 0;
int allocations = 0;
decltype(::malloc)* realMalloc = nullptr;

void* __cdecl CountedMalloc(std::size_t size) {
    if (GetCurrentThreadId() == countingThread) {
        ++allocations;
    }
    return realMalloc(size);
}

TEST(CreatePluginFunction, AllocatesObjectAndCountsTogether) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    realMalloc = redirection.Redirect<decltype(::malloc)>("malloc", CountedMalloc);
    countingThread = GetCurrentThreadId();
    allocations = 0;
    const std::shared_ptr<ZedPlugin> plugin = CreatePlugin();
    countingThread = 0;
    EXPECT_EQ(allocations, 1);
}

}  // namespace
