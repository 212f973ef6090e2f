#include "reporters/report_ec_log_info.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "platform/wmi_kit.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/grouping_locale.h"
#include "support/recorded_suite.h"
#include "unit/import_override.h"

namespace {

using Texts = std::vector<std::string>;

std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

class EcLogReport : public testing::Test {
protected:
    static void Answer(int result, unsigned char status, unsigned char dataSize,
                       const std::vector<unsigned char>& data) {
        WmiKit_SetAnswer(result, status, dataSize, data.data(), data.size());
    }

    Texts Run() {
        suite.timeline.Clear();
        ReportECLogInfo();
        return suite.timeline.Texts();
    }

    /// The value of the latest event's only field.
    std::string SentText() {
        const std::vector<test_support::Event> events = suite.events.All();
        if (events.empty() || events.back().fields.size() != 1 ||
            events.back().fields[0].first != "ECLog") {
            ADD_FAILURE() << "no event with one field ECLog";
            return {};
        }
        return events.back().fields[0].second;
    }

    test_support::RecordedSuite suite;
};

TEST_F(EcLogReport, SendsARequestOf64BytesThatAreZeroBehindTheCommand) {
    std::string request;
    suite.onWmiCall = [&](const std::string&, const std::string& bytes) { request = bytes; };
    Run();
    EXPECT_EQ(request, std::string("\x06\x0C\x07", 3) + std::string(61, '\0'));
}

TEST_F(EcLogReport, LogsTheSizeAsANumberThenSendsAll253BytesWhateverItIs) {
    const test_support::GroupingLocale grouping;
    const std::vector<unsigned char> data(253, 0xAB);
    // 65 is A as a character.
    for (const int dataSize : {0, 2, 65, 253, 255}) {
        Answer(0, 0, static_cast<unsigned char>(dataSize), data);
        EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo",
                                "log 3 EC log data size is " + std::to_string(dataSize) +
                                    "(ReportECLogInfo)",
                                "event 992614512"}));
        EXPECT_EQ(SentText(), Repeated("0xab", 253));
    }
    EXPECT_EQ(suite.events.Warnings(), Texts{});
}

TEST_F(EcLogReport, WritesTwoLowerCaseDigitsForEveryByte) {
    std::vector<unsigned char> data(253);
    std::iota(data.begin(), data.end(), static_cast<unsigned char>(0));
    Answer(0, 0, 253, data);
    Run();
    std::string expected;
    const char digits[] = "0123456789abcdef";
    for (std::size_t i = 0; i < 253; ++i) {
        expected += std::string("0x") + digits[i / 16] + digits[i % 16];
    }
    EXPECT_EQ(SentText(), expected);
}

struct Failure {
    int result;
    unsigned char status;
};

TEST_F(EcLogReport, LogsAFailedCallOrAStatusThatIsNotZeroAndSendsNothing) {
    const test_support::GroupingLocale grouping;
    for (const auto& [result, status] : {Failure{0, 1}, Failure{0, 200}, Failure{5, 0},
                                         Failure{std::numeric_limits<int>::min(), 66}}) {
        Answer(result, status, 16, {1, 2, 3});
        EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo",
                                "log 4 ReadECLog error ret=" + std::to_string(result) +
                                    ",status=" + std::to_string(status) + "(ReportECLogInfo)"}));
    }
}

// --- A library that leaves the record alone ---

#if defined(_MSC_VER)
constexpr char kGetBiosInfoName[] =
    "?GetBiosInfo@BiosWmi@VrSDK@@SAHAEAUWmiInputParams@2@AEAUWmiOutputParams@2@@Z";
#else
constexpr char kGetBiosInfoName[] =
    "_ZN5VrSDK7BiosWmi11GetBiosInfoERNS_14WmiInputParamsERNS_15WmiOutputParamsE";
#endif

using GetBiosInfo = int(VrSDK::WmiInputParams&, VrSDK::WmiOutputParams&);

int untouchingResult = 0;
std::string recordBeforeTheCall;

int LeaveOutputUntouched(VrSDK::WmiInputParams&, VrSDK::WmiOutputParams& output) {
    recordBeforeTheCall.assign(reinterpret_cast<const char*>(&output), sizeof(output));
    return untouchingResult;
}

TEST_F(EcLogReport, OffersARecordOf256ZeroBytesWhichIsAllThereIsWhenItIsLeftAlone) {
    const unit_tests::ImportOverride<GetBiosInfo> handMade(kGetBiosInfoName, LeaveOutputUntouched);
    EXPECT_EQ(Run(), (Texts{"log 3 EC log data size is 0(ReportECLogInfo)", "event 992614512"}));
    EXPECT_EQ(recordBeforeTheCall, std::string(256, '\0'));
    EXPECT_EQ(SentText(), Repeated("0x00", 253));
    untouchingResult = -2;
    EXPECT_EQ(Run(), Texts{"log 4 ReadECLog error ret=-2,status=0(ReportECLogInfo)"});
}

}  // namespace
