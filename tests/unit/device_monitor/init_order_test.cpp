// The order in which the gates are asked, the clock is read and the count is loaded.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "unit/device_monitor/monitor_test.h"

namespace {

using namespace device_monitor_test;
using DeviceReporter::ReportDeviceInfo;
using Texts = std::vector<std::string>;

/// The clock moves at each call into the suite, so the time that was kept tells when it was read.
class InitOrder : public MonitorTest {
protected:
    InitOrder() {
        EditionAdapt_SetObserver(
            [](void* context, const char* operation, const char* name, const char* value) {
                std::string text = operation;
                for (const char* argument : {name, value}) {
                    if (argument != nullptr) {
                        text.append(" ").append(argument);
                    }
                }
                static_cast<InitOrder*>(context)->Note(text);
            },
            this);
        FileKit_SetInterceptor(
            [](void* context, int, HKEY, const wchar_t*, const wchar_t*, unsigned, long long* value,
               unsigned long*) -> int {
                static_cast<InitOrder*>(context)->Note("the count is read");
                *value = 6;
                return FILE_KIT_SUCCEED;
            },
            this);
    }

    void Note(const std::string& text) {
        World().clock.Advance(std::chrono::seconds(1));
        Timeline().Note(text);
    }
};

TEST_F(InitOrder, IsFeatureThenShelfThenClockThenCount) {
    const std::int64_t begin = Now();
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(),
              (Texts{"FeatureSwitch::QueryFeature ReportDeviceList", "ZedSoftShelf::GetInstance",
                     "ZedSoftShelf::IsSupportProperty VRLoginGuide china", "the count is read"}));
    // After the third call, before the fourth.
    EXPECT_EQ(ReportDeviceInfo::GetInstance().lastReportTime, begin + 3'000'000'000);
    EXPECT_EQ(ReportDeviceInfo::GetInstance().reportCount, 6);
}

TEST_F(InitOrder, EndsAtTheFirstGateThatRefuses) {
    EditionAdapt_SetFeature("ReportDeviceList", 2);
    EXPECT_FALSE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(),
              (Texts{"FeatureSwitch::QueryFeature ReportDeviceList",
                     "log 3 machine type not support(DeviceReporter::ReportDeviceInfo::Init)"}));
}

TEST_F(InitOrder, AsksAnAbsentShelfNothing) {
    EditionAdapt_SetShelf(/*present=*/0, /*supported=*/0);
    EXPECT_TRUE(ReportDeviceInfo::Init());
    EXPECT_EQ(Timeline().Texts(), (Texts{"FeatureSwitch::QueryFeature ReportDeviceList",
                                         "ZedSoftShelf::GetInstance", "the count is read"}));
}

}  // namespace
