#include "reporters/report_ec_log_info.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "simulation/import_redirection.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/grouping_locale.h"
#include "support/recorded_suite.h"

namespace {

using test_support::EventFields;
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
    EcLogReport() {
        suite.onWmiCall = [this](const std::string&, const std::string& bytes) { request = bytes; };
    }

    void Answer(int result, unsigned char status, unsigned char dataSize,
                const std::vector<unsigned char>& data) {
        WmiKit_SetAnswer(result, status, dataSize, data.data(), data.size());
    }

    Texts Run() {
        suite.timeline.Clear();
        ReportECLogInfo();
        return suite.timeline.Texts();
    }

    /// The value of the only event's only field.
    std::string SentText() {
        const std::vector<test_support::Event> events = suite.events.All();
        if (events.size() != 1 || events[0].fields.size() != 1 ||
            events[0].fields[0].first != "ECLog") {
            ADD_FAILURE() << "not one event with one field ECLog";
            return {};
        }
        return events[0].fields[0].second;
    }

    test_support::RecordedSuite suite;
    std::string request;
};

TEST_F(EcLogReport, AsksTheFirmwareThenLogsTheSizeThenSendsTheEvent) {
    Answer(0, 0, 16, {1, 2, 3});
    EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo", "log 3 EC log data size is 16(ReportECLogInfo)",
                            "event 992614512"}));
}

TEST_F(EcLogReport, SendsARequestOf64BytesThatAreZeroBehindTheCommand) {
    Run();
    EXPECT_EQ(request, std::string("\x06\x0C\x07", 3) + std::string(61, '\0'));
}

TEST_F(EcLogReport, EncodesSixteenBytesAndFillsUpWithZeroes) {
    std::vector<unsigned char> data(16);
    std::iota(data.begin(), data.end(), static_cast<unsigned char>(0xF3));
    Answer(0, 0, 16, data);
    Run();
    EXPECT_EQ(SentText(), "0xf30xf40xf50xf60xf70xf80xf90xfa0xfb0xfc0xfd0xfe0xff0x000x010x02" +
                              Repeated("0x00", 253 - 16));
}

TEST_F(EcLogReport, IsAlways1012CharactersLong) {
    for (const int dataSize : {0, 1, 16, 253, 255}) {
        Answer(0, 0, static_cast<unsigned char>(dataSize), {1, 2, 3});
        Run();
        const std::vector<test_support::Event> events = suite.events.All();
        ASSERT_EQ(events.back().fields.size(), 1u);
        EXPECT_EQ(events.back().fields[0].second.size(), 1012u);
    }
    EXPECT_EQ(suite.events.All().size(), 5u);
    EXPECT_EQ(suite.events.Warnings(), Texts{});
}

TEST_F(EcLogReport, EncodesAll253BytesWhateverSizeTheFirmwareStates) {
    Answer(0, 0, 2, std::vector<unsigned char>(253, 0xAB));
    EXPECT_EQ(Run()[1], "log 3 EC log data size is 2(ReportECLogInfo)");
    EXPECT_EQ(SentText(), Repeated("0xab", 253));
}

TEST_F(EcLogReport, WritesTwoLowerCaseDigitsForEveryByte) {
    std::vector<unsigned char> data(253);
    std::iota(data.begin(), data.end(), static_cast<unsigned char>(0));
    Answer(0, 0, 253, data);
    Run();
    const char digits[] = "0123456789abcdef";
    const std::string text = SentText();
    ASSERT_EQ(text.size(), 1012u);
    for (std::size_t i = 0; i < 253; ++i) {
        EXPECT_EQ(text.substr(4 * i, 4), std::string("0x") + digits[i / 16] + digits[i % 16]);
    }
}

TEST_F(EcLogReport, WritesDigitsWhateverTheGlobalLocale) {
    const test_support::GroupingLocale grouping;
    Answer(-1234567, 0, 0, {});
    EXPECT_EQ(Run()[1], "log 4 ReadECLog error ret=-1234567,status=0(ReportECLogInfo)");
    Answer(0, 0, 253, {0x0A, 0xFF});
    EXPECT_EQ(Run()[1], "log 3 EC log data size is 253(ReportECLogInfo)");
    EXPECT_EQ(SentText().substr(0, 12), "0x0a0xff0x00");
}

TEST_F(EcLogReport, LogsSizesAsNumbers) {
    Answer(0, 0, 65, {});  // As a character: A.
    EXPECT_EQ(Run()[1], "log 3 EC log data size is 65(ReportECLogInfo)");
    Answer(0, 0, 0, {});
    EXPECT_EQ(Run()[1], "log 3 EC log data size is 0(ReportECLogInfo)");
    Answer(0, 0, 255, {});
    EXPECT_EQ(Run()[1], "log 3 EC log data size is 255(ReportECLogInfo)");
}

TEST_F(EcLogReport, LogsAStatusThatIsNotZeroAndSendsNothing) {
    Answer(0, 1, 16, {1, 2, 3});
    EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo",
                            "log 4 ReadECLog error ret=0,status=1(ReportECLogInfo)"}));
    Answer(0, 200, 16, {1, 2, 3});
    EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo",
                            "log 4 ReadECLog error ret=0,status=200(ReportECLogInfo)"}));
}

TEST_F(EcLogReport, LogsAFailedCallAndSendsNothing) {
    Answer(5, 0, 16, {1, 2, 3});
    EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo",
                            "log 4 ReadECLog error ret=5,status=0(ReportECLogInfo)"}));
    Answer(std::numeric_limits<int>::min(), 66, 16, {1, 2, 3});
    EXPECT_EQ(Run(), (Texts{"BiosWmi::GetBiosInfo",
                            "log 4 ReadECLog error ret=-2147483648,status=66(ReportECLogInfo)"}));
}

// --- A library that leaves the record alone ---

#if defined(_MSC_VER)
constexpr char kGetBiosInfoName[] =
    "?GetBiosInfo@BiosWmi@VrSDK@@SAHAEAUWmiInputParams@2@AEAUWmiOutputParams@2@@Z";
#else
constexpr char kGetBiosInfoName[] =
    "_ZN5VrSDK7BiosWmi11GetBiosInfoERNS_14WmiInputParamsERNS_15WmiOutputParamsE";
#endif

int untouchingResult = 0;
std::string recordBeforeTheCall;

int LeaveOutputUntouched(VrSDK::WmiInputParams&, VrSDK::WmiOutputParams& output) {
    recordBeforeTheCall.assign(reinterpret_cast<const char*>(&output), sizeof(output));
    return untouchingResult;
}

class EcLogRecord : public EcLogReport {
protected:
    EcLogRecord() {
        redirection.Redirect<int(VrSDK::WmiInputParams&, VrSDK::WmiOutputParams&)>(
            kGetBiosInfoName, LeaveOutputUntouched);
    }

    simulation::ImportRedirection redirection{GetModuleHandleW(nullptr)};
};

TEST_F(EcLogRecord, Is256ZeroBytesBeforeTheCall) {
    untouchingResult = 0;
    Run();
    EXPECT_EQ(recordBeforeTheCall, std::string(256, '\0'));
}

TEST_F(EcLogRecord, ShowsStatusZeroInTheFailureLine) {
    untouchingResult = -2;
    EXPECT_EQ(Run(), Texts{"log 4 ReadECLog error ret=-2,status=0(ReportECLogInfo)"});
}

TEST_F(EcLogRecord, IsSentAsZeroesWhenTheCallSucceeds) {
    untouchingResult = 0;
    EXPECT_EQ(Run(), (Texts{"log 3 EC log data size is 0(ReportECLogInfo)", "event 992614512"}));
    EXPECT_EQ(SentText(), Repeated("0x00", 253));
}

}  // namespace
