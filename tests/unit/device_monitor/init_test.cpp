// The gates that the plug-in's start asks, and the persisted count.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standins/edition_adapt/edition_adapt_control.h"
#include "unit/device_monitor/monitor_test.h"

namespace {

using namespace device_monitor_test;
using DeviceReporter::ReportDeviceInfo;
using Texts = std::vector<std::string>;

constexpr char kMachineTypeLine[] =
    "log 3 machine type not support(DeviceReporter::ReportDeviceInfo::Init)";
constexpr char kOverseaLine[] = "log 3 oversea version(DeviceReporter::ReportDeviceInfo::Init)";
constexpr char kReadFailedLine[] =
    "log 3 failed to read reg(`anonymous-namespace'::ReadReportCountReg)";

class Init : public MonitorTest {
protected:
    ReportDeviceInfo& instance = ReportDeviceInfo::GetInstance();
};

/// Before the tests, so before any Init.
class FreshInstance : public testing::Environment {
public:
    void SetUp() override {
        const ReportDeviceInfo& reporter = ReportDeviceInfo::GetInstance();
        reportCount = reporter.reportCount;
        lastReportTime = reporter.lastReportTime;
        isEmpty = reporter.devices.empty() && reporter.msgWindow == nullptr &&
                  reporter.devNotify == nullptr;
    }
    std::int32_t reportCount = -1;
    std::int64_t lastReportTime = -1;
    bool isEmpty = false;
};
const auto* const fresh =
    static_cast<FreshInstance*>(testing::AddGlobalTestEnvironment(new FreshInstance));

TEST_F(Init, IsPrecededByAReporterThatCountsAsExhausted) {
    EXPECT_EQ(fresh->reportCount, 10);
    EXPECT_EQ(fresh->lastReportTime, 0);
    EXPECT_TRUE(fresh->isEmpty);
}

TEST_F(Init, PassesWithFeatureValue3AndSupportedRegion) {
    suite.registry.SetValue(kCountValue, 4);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(), Texts{kReadCount});
    EXPECT_EQ(instance.reportCount, 4);
}

TEST_F(Init, RefusesEveryOtherFeatureValue) {
    for (const int value : {0, 1, 2, 4, 5, -3, 33, 0x103}) {
        Timeline().Clear();
        EditionAdapt_SetFeature("ReportDeviceList", value);
        EXPECT_FALSE(ReportDeviceInfo::Init()) << value;
        EXPECT_EQ(Timeline().Texts(), Texts{kMachineTypeLine}) << value;
    }
}

TEST_F(Init, RefusesAnUnknownFeature) {
    EditionAdapt_ClearFeatures();
    EXPECT_FALSE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(), Texts{kMachineTypeLine});
}

TEST_F(Init, IgnoresTheResultOfTheFeatureQuery) {
    EditionAdapt_SetQueryResult(-1);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EditionAdapt_SetQueryResult(1);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EditionAdapt_SetFeature("ReportDeviceList", 2);
    EXPECT_FALSE(ReportDeviceInfo::Init());
}

TEST_F(Init, RefusesARegionThatTheShelfDoesNotSupport) {
    EditionAdapt_SetShelf(/*present=*/1, /*supported=*/0);
    EXPECT_FALSE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(), Texts{kOverseaLine});
}

TEST_F(Init, RefusesAShelfThatSupportsAnotherPropertyOrValue) {
    EditionAdapt_SetShelfProperty("VRLoginGuide", "China");
    EXPECT_FALSE(ReportDeviceInfo::Init());
    EditionAdapt_SetShelfProperty("china", "VRLoginGuide");
    EXPECT_FALSE(ReportDeviceInfo::Init());
}

TEST_F(Init, PassesWithoutAShelf) {
    EditionAdapt_SetShelf(/*present=*/0, /*supported=*/0);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Count(kOverseaLine), 0u);
}

TEST_F(Init, ThatIsRefusedLeavesTheReporterAsItWas) {
    suite.registry.SetValue(kCountValue, 4);
    for (const bool wrongFeature : {true, false}) {
        EditionAdapt_SetFeature("ReportDeviceList", wrongFeature ? 2 : 3);
        EditionAdapt_SetShelf(1, /*supported=*/0);
        instance.reportCount = 10;
        instance.lastReportTime = 17;
        EXPECT_FALSE(ReportDeviceInfo::Init());
        EXPECT_EQ(instance.reportCount, 10);
        EXPECT_EQ(instance.lastReportTime, 17);
        EXPECT_EQ(Timeline().Count(kReadCount), 0u);
    }
}

TEST_F(Init, BeginsTheDayOfWaiting) {
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(instance.lastReportTime, 100 * kDay);
    World().clock.Advance(std::chrono::nanoseconds(700));
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(instance.lastReportTime, 100 * kDay + 700);
}

TEST_F(Init, TakesAnyPersistedCountAsItIs) {
    for (const std::int32_t count : {0, 8, 9, 10, 11, -1, INT32_MAX, INT32_MIN}) {
        suite.registry.SetValue(kCountValue, count);
        EXPECT_TRUE(ReportDeviceInfo::Init());
        EXPECT_EQ(instance.reportCount, count);
    }
}

TEST_F(Init, PassesWithACountOfZeroWhenTheCountCannotBeRead) {
    instance.reportCount = 5;
    suite.registry.SetValue(kCountValue, 4);
    suite.registry.FailReads(kCountValue, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(instance.reportCount, 0);
    EXPECT_EQ(instance.lastReportTime, Now());
    EXPECT_EQ(Timeline().Texts(), (Texts{kReadCount, kReadFailedLine}));
}

TEST_F(Init, LogsTheFailedReadOfAFreshInstallation) {
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(instance.reportCount, 0);
    EXPECT_EQ(Timeline().Texts(), (Texts{kReadCount, kReadFailedLine}));
}

TEST_F(Init, StartsNothing) {
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Journal().Count("CreateThread"), 0u);
    EXPECT_EQ(Journal().Count("RegisterClassW"), 0u);
    EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
    EXPECT_EQ(instance.msgWindow, nullptr);
}

}  // namespace
