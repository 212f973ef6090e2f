// The gates that the plug-in's start asks, in their order. Which values open them is in the tests
// of the built library.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>

#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "unit/device_reporter/monitor_test.h"

namespace {

using namespace device_tests;
using DeviceReporter::ReportDeviceInfo;

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

TEST(Reporter, CountsAsExhaustedBeforeTheGatesWereAsked) {
    EXPECT_EQ(fresh->reportCount, 10);
    EXPECT_EQ(fresh->lastReportTime, 0);
    EXPECT_TRUE(fresh->isEmpty);
}

/// The clock moves at each call into the suite, so the time that was kept tells when it was read.
class Init : public MonitorTest {
protected:
    Init() {
        EditionAdapt_SetObserver(
            [](void* context, const char* operation, const char* name, const char* value) {
                std::string text = operation;
                for (const char* argument : {name, value}) {
                    if (argument != nullptr) {
                        text.append(" ").append(argument);
                    }
                }
                static_cast<Init*>(context)->Note(text);
            },
            this);
        FileKit_SetInterceptor(
            [](void* context, int, HKEY, const wchar_t*, const wchar_t*, unsigned, long long* value,
               unsigned long*) -> int {
                static_cast<Init*>(context)->Note("the count is read");
                *value = 6;
                return FILE_KIT_SUCCEED;
            },
            this);
    }

    void Note(const std::string& text) {
        World().clock.Advance(std::chrono::seconds(1));
        Timeline().Note(text);
    }

    ReportDeviceInfo& instance = ReportDeviceInfo::GetInstance();
};

constexpr char kAskedFeature[] = "FeatureSwitch::QueryFeature ReportDeviceList";
constexpr char kAskedRegion[] = "ZedSoftShelf::IsSupportProperty VRLoginGuide china";

TEST_F(Init, AsksFeatureThenShelfThenClockThenCount) {
    const std::int64_t begin = Now();
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(), (Texts{kAskedFeature, "ZedSoftShelf::GetInstance", kAskedRegion,
                                         "the count is read"}));
    // After the third call, before the fourth.
    EXPECT_EQ(instance.lastReportTime, begin + 3'000'000'000);
    EXPECT_EQ(instance.reportCount, 6);
    EXPECT_EQ(instance.msgWindow, nullptr);
}

TEST_F(Init, EndsAtTheFirstGateThatRefusesAndLeavesTheReporterAsItWas) {
    instance.reportCount = 11;
    instance.lastReportTime = 17;
    EditionAdapt_SetFeature("ReportDeviceList", 0x103);
    EXPECT_FALSE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(),
              (Texts{kAskedFeature,
                     "log 3 machine type not support(DeviceReporter::ReportDeviceInfo::Init)"}));
    Timeline().Clear();
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    EditionAdapt_SetShelf(/*present=*/1, /*supported=*/0);
    EXPECT_FALSE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(),
              (Texts{kAskedFeature, "ZedSoftShelf::GetInstance", kAskedRegion,
                     "log 3 oversea version(DeviceReporter::ReportDeviceInfo::Init)"}));
    EXPECT_EQ(instance.reportCount, 11);
    EXPECT_EQ(instance.lastReportTime, 17);
}

TEST_F(Init, AsksAnAbsentShelfNothingAndIgnoresTheResultOfTheFeatureQuery) {
    EditionAdapt_SetShelf(/*present=*/0, /*supported=*/0);
    EditionAdapt_SetQueryResult(-1);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(),
              (Texts{kAskedFeature, "ZedSoftShelf::GetInstance", "the count is read"}));
}

}  // namespace
