#include "host/machine_time.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using std::chrono::seconds;

struct Reading {
    const char* text;
    std::optional<seconds> time;
};

std::ostream& operator<<(std::ostream& stream, const Reading& reading) {
    return stream << '"' << reading.text << '"';
}

class MachineTimeReading : public testing::TestWithParam<Reading> {};

TEST_P(MachineTimeReading, IsAsExpected) {
    EXPECT_EQ(ParseMachineTime(GetParam().text), GetParam().time);
}

INSTANTIATE_TEST_SUITE_P(
    Readable, MachineTimeReading,
    testing::Values(Reading{"0s", seconds(0)}, Reading{"3d", seconds(259200)},
                    Reading{"3d 04:00", seconds(259200 + 14400)}, Reading{"04:00", seconds(14400)},
                    Reading{"4:05:06", seconds(14706)}, Reading{"36h", seconds(129600)},
                    Reading{"1d 2h 30m 5s", seconds(95405)}, Reading{" 90s ", seconds(90)},
                    Reading{"2d 23:59:59", seconds(259199)},
                    Reading{"999999d", seconds(86399913600)}));

INSTANTIATE_TEST_SUITE_P(
    Unreadable, MachineTimeReading,
    testing::Values(Reading{"", {}}, Reading{" ", {}}, Reading{"3", {}}, Reading{"d", {}},
                    Reading{"-1d", {}}, Reading{"1.5h", {}}, Reading{"3w", {}},
                    Reading{"24:00", {}}, Reading{"04:60", {}}, Reading{"04:5", {}},
                    Reading{"04:", {}}, Reading{"04:00:60", {}}, Reading{"04:00:00:00", {}},
                    Reading{"04:00 1d", {}}, Reading{"1h 04:00", {}}, Reading{"1h 1d", {}},
                    Reading{"1d 1d", {}}, Reading{"1d later", {}}, Reading{"1000000d", {}}));

TEST(MachineTime, IsWrittenWithDaysAndTwoDigitsEach) {
    EXPECT_EQ(FormatMachineTime(seconds(0)), "0d 00:00:00");
    EXPECT_EQ(FormatMachineTime(seconds(95405)), "1d 02:30:05");
    EXPECT_EQ(FormatMachineTime(seconds(86399913600)), "999999d 00:00:00");
}

}  // namespace
}  // namespace host
