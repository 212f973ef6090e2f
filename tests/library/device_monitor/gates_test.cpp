// When Start sets up the device reports at all.
#include <gtest/gtest.h>

#include <tuple>

#include "library/device_monitor/monitored_plugin.h"
#include "standins/edition_adapt/edition_adapt_control.h"

namespace {

using namespace device_monitor_test;

constexpr char kHourlyTimer[] = "log 3 Register timer:1(TimerReportMgr::RegisterReportCallback)";
constexpr char kMachineTypeLine[] =
    "log 3 machine type not support(DeviceReporter::ReportDeviceInfo::Init)";
constexpr char kOverseaLine[] = "log 3 oversea version(DeviceReporter::ReportDeviceInfo::Init)";

class Gates : public MonitoredPlugin {
protected:
    void ExpectDeviceReports(bool expected) {
        Start(/*expectMonitor=*/expected);
        EXPECT_EQ(Journal().Count("CreateThread"), expected ? 1u : 0u);
        EXPECT_EQ(Timeline().Count(kHourlyTimer), expected ? 1u : 0u);
        Stop();
        EXPECT_EQ(Timeline().Count(kStopWithoutWindow), expected ? 0u : 1u);
    }
};

class FeatureGate : public Gates, public testing::WithParamInterface<int> {};

TEST_P(FeatureGate, OpensAt3Only) {
    EditionAdapt_SetFeature("ReportDeviceList", GetParam());
    ExpectDeviceReports(GetParam() == 3);
    EXPECT_EQ(Timeline().Count(kMachineTypeLine), GetParam() == 3 ? 0u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Value, FeatureGate, testing::Range(0, 5));

using Shelf = std::tuple<int, int>;
class RegionGate : public Gates, public testing::WithParamInterface<Shelf> {};

TEST_P(RegionGate, IsClosedOnlyByAShelfThatSaysNo) {
    const auto [present, supported] = GetParam();
    EditionAdapt_SetShelf(present, supported);
    const bool open = present == 0 || supported != 0;
    ExpectDeviceReports(open);
    EXPECT_EQ(Timeline().Count(kOverseaLine), open ? 0u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Shelf, RegionGate,
                         testing::Combine(testing::Values(0, 1), testing::Values(0, 1)));

class CountGate : public Gates, public testing::WithParamInterface<int> {};

TEST_P(CountGate, OpensBelowTen) {
    suite.registry.SetValue(kCountValue, GetParam());
    ExpectDeviceReports(GetParam() < 10);
}

INSTANTIATE_TEST_SUITE_P(Count, CountGate,
                         testing::Values(-2147483647 - 1, -1, 0, 8, 9, 10, 11, 2147483647));

}  // namespace
