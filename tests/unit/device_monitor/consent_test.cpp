// Nothing is sent unless the user has agreed.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standins/consent_store/consent_store_control.h"
#include "unit/device_monitor/monitor_test.h"

namespace {

using namespace device_monitor_test;
using Texts = std::vector<std::string>;

std::string RefusalLine(const std::string& answer) {
    return "log 3 IsAgreeClause = " + answer +
           "(DeviceReporter::ReportDeviceInfo::DoReportDevices)";
}

class Consent : public MonitorTest {
protected:
    Consent() { MakeDue(0); }
};

TEST_F(Consent, OfExactlyOneReportsAndIsAskedOnce) {
    reporter.DoReportDevices();
    EXPECT_EQ(ConsentStore_AskCount(), 1u);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_TRUE(Timeline().TextsWith("log 3 IsAgreeClause").empty());
}

TEST_F(Consent, OfAnythingElseOnlyLogsTheAnswer) {
    for (const char* const answer : {"0", "", "11", " 1", "1 ", "01", "2", "true", "-1", "1\n"}) {
        Timeline().Clear();
        SetConsent({answer});
        reporter.DoReportDevices();
        EXPECT_EQ(Timeline().Texts(), Texts{RefusalLine(answer)});
        EXPECT_EQ(ConsentStore_AskCount(), 2u) << answer;
    }
}

TEST_F(Consent, ThatWasNeverAskedForCountsAsRefused) {
    ConsentStore_Reset();
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Texts(), Texts{RefusalLine("")});
    EXPECT_EQ(ConsentStore_AskCount(), 2u);
}

TEST_F(Consent, IsAskedTwiceWhenRefusedAndTheSecondAnswerIsLogged) {
    SetConsent({"0", "second", "third"});
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Texts(), Texts{RefusalLine("second")});
    EXPECT_EQ(ConsentStore_AskCount(), 2u);
}

TEST_F(Consent, OfTheSecondAnswerDoesNotReport) {
    SetConsent({"0", "1"});
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Texts(), Texts{RefusalLine("1")});
}

TEST_F(Consent, ThatIsRefusedChangesNothing) {
    SetConsent({"0"});
    const std::int64_t before = reporter.lastReportTime;
    reporter.DoReportDevices();
    EXPECT_EQ(reporter.lastReportTime, before);
    EXPECT_EQ(reporter.reportCount, 0);
    EXPECT_EQ(reporter.devices.size(), 1u);
    EXPECT_FALSE(suite.registry.Value(kCountValue).has_value());
}

TEST_F(Consent, IsAskedAgainAtTheNextRequest) {
    SetConsent({"0"});
    reporter.DoReportDevices();
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Texts(), (Texts{RefusalLine("0"), RefusalLine("0")}));
    SetConsent({"1"});
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
}

TEST_F(Consent, ThatIsRefusedKeepsAnExhaustedMonitorOpen) {
    reporter.reportCount = 10;
    SetConsent({"0"});
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Texts(), Texts{RefusalLine("0")});
}

}  // namespace
