// The record and the factory as objects. What the manager gets of them is in the tests of the built
// library.
#include "plugin/plugin_registration.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>

#include "plugin/tallyport_plugin.h"
#include "unit/import_override.h"

namespace {

using unit_tests::ImportOverride;

static_assert(std::is_same_v<decltype(PluginRegistrationInfo::reservedText), std::string>);
static_assert(
    std::is_same_v<decltype(PluginRegistrationInfo::reservedCallback), std::function<void()>>);

template <class Member>
std::ptrdiff_t OffsetInRecord(const Member& member) {
    return reinterpret_cast<const char*>(&member) -
           reinterpret_cast<const char*>(&pluginRegistration);
}

TEST(RegistrationRecord, HoldsCreatePluginItselfAsFactory) {
    const auto* const function =
        pluginRegistration.factory.target<std::shared_ptr<ZedPlugin> (*)()>();
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(*function, &CreatePlugin);
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

using Malloc = void*(std::size_t);
DWORD countingThread = 0;
int allocations = 0;

void* __cdecl CountedMalloc(std::size_t size) {
    if (GetCurrentThreadId() == countingThread) {
        ++allocations;
    }
    return ImportOverride<Malloc>::Next()(size);
}

TEST(CreatePluginFunction, AllocatesObjectAndCountsTogether) {
    const ImportOverride<Malloc> counted("malloc", CountedMalloc);
    countingThread = GetCurrentThreadId();
    const std::shared_ptr<ZedPlugin> plugin = CreatePlugin();
    countingThread = 0;
    EXPECT_EQ(allocations, 1);
    EXPECT_EQ(plugin.use_count(), 1);
}

}  // namespace
