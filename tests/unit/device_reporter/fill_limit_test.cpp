// The limit of 500 entries, in either fill.
#include <string>

#include "support/grouping_locale.h"
#include "unit/device_reporter/either_fill.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;

class FillLimit : public device_tests::EitherFill {
protected:
    /// Entries that no device of the machine has.
    void Preload(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            devices.emplace(L"PCI\\" + std::to_wstring(i), DeviceReporter::DeviceInfo{});
        }
    }

    /// The devices can be opened, so that HID interfaces cause no log lines.
    void GiveMachine(std::size_t count) {
        machine.devices = device_tests::ManyDevices(count);
        for (simulation::Device& device : machine.devices) {
            device.interfaces[0].hid.emplace();
        }
    }

    std::string LimitLine(std::size_t count) const {
        return Line("device map size exceeds limit: " + std::to_string(count));
    }
};

INSTANTIATE_TEST_SUITE_P(Each, FillLimit, device_tests::BothFills(), device_tests::FillName);

TEST_P(FillLimit, IsNotReachedBy499Devices) {
    GiveMachine(499);
    EXPECT_TRUE(Run());
    EXPECT_EQ(devices.size(), 499u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(FillLimit, EndsTheWalkAtThe500thInsertion) {
    GiveMachine(500);
    EXPECT_TRUE(Run());
    EXPECT_EQ(devices.size(), 500u);
    EXPECT_THAT(Log(), ElementsAre(LimitLine(500)));
    // The walk does not even ask whether there is another device.
    EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInfo"), 500u);
}

TEST_P(FillLimit, LeavesOutThe501stDevice) {
    GiveMachine(501);
    EXPECT_TRUE(Run());
    EXPECT_EQ(devices.size(), 500u);
    EXPECT_EQ(devices.count(L"USB\\500"), 0u);
    EXPECT_THAT(Log(), ElementsAre(LimitLine(500)));
    EXPECT_EQ(world.journal.Count("SetupDiGetDeviceInstanceIdW"), 500u);
}

TEST_P(FillLimit, LeavesRoomForOneMoreBehind499Entries) {
    Preload(499);
    GiveMachine(3);
    EXPECT_TRUE(Run());
    EXPECT_EQ(devices.size(), 500u);
    EXPECT_EQ(devices.count(L"USB\\000"), 1u);
    EXPECT_THAT(Log(), ElementsAre(LimitLine(500)));
}

TEST_P(FillLimit, IsNotMetByDevicesThatAreKnownAlready) {
    GiveMachine(499);
    EXPECT_TRUE(Run());
    EXPECT_TRUE(Run());
    EXPECT_EQ(devices.size(), 499u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(FillLimit, RefusesAMapWith500EntriesWithoutOpeningASet) {
    Preload(500);
    GiveMachine(1);
    EXPECT_FALSE(Run());
    EXPECT_EQ(devices.size(), 500u);
    EXPECT_THAT(Log(), ElementsAre(LimitLine(500)));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_P(FillLimit, RefusesAMapWithMoreEntriesAndLogsTheirCount) {
    Preload(501);
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(LimitLine(501)));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_P(FillLimit, LogsTheCountWithoutGroupsWhateverTheGlobalLocale) {
    const test_support::GroupingLocale grouping;
    Preload(1234);
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line("device map size exceeds limit: 1234")));
}

}  // namespace
