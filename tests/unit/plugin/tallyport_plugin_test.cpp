// The plug-in object as such. What Start and Stop do is in the library tests.
#include "plugin/tallyport_plugin.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/recorded_suite.h"

namespace {

TEST(PluginObject, SaysYesToInitializeAndUninitializeAndDoesNothing) {
    const test_support::RecordedSuite suite;
    TallyportPlugin plugin;
    EXPECT_TRUE(plugin.Initialize());
    EXPECT_TRUE(plugin.Uninitialize());
    EXPECT_TRUE(suite.timeline.Texts().empty());
}

TEST(PluginObject, HasNoDataOfItsOwn) { EXPECT_EQ(sizeof(TallyportPlugin), sizeof(void*)); }

TEST(PluginInterface, HasNoVirtualDestructor) {
    static_assert(!std::has_virtual_destructor_v<ZedPlugin>);
    static_assert(!std::has_virtual_destructor_v<TallyportPlugin>);
}

/// Notes which operation is called.
class NotingPlugin final : public ZedPlugin {
public:
    bool Initialize() override { return Note("Initialize"); }
    bool Uninitialize() override { return Note("Uninitialize"); }
    bool Start() override { return Note("Start"); }
    bool Stop() override { return Note("Stop"); }

    std::vector<std::string> calls;

private:
    bool Note(const char* operation) {
        calls.emplace_back(operation);
        return true;
    }
};

/// The host calls by position. On 64-bit Windows a member function takes its object as the first
/// argument whatever the compiler.
TEST(PluginInterface, HasItsFourOperationsInTheHostsOrder) {
    using Slot = bool (*)(ZedPlugin*);
    NotingPlugin plugin;
    ZedPlugin* const object = &plugin;
    const Slot* const slots = *reinterpret_cast<const Slot* const*>(object);
    for (int slot = 0; slot < 4; ++slot) {
        EXPECT_TRUE(slots[slot](object));
    }
    EXPECT_EQ(plugin.calls,
              (std::vector<std::string>{"Initialize", "Uninitialize", "Start", "Stop"}));
}

}  // namespace
