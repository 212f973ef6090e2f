#include <string>

#include "device_reporter/display_info.h"
#include "unit/device_reporter/device_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::GetDisplayMode;

std::wstring WordOf(unsigned topology) {
    return GetDisplayMode(static_cast<DISPLAYCONFIG_TOPOLOGY_ID>(topology));
}

class DisplayModeWord : public device_tests::DeviceTest {};

TEST_F(DisplayModeWord, NamesTheFourTopologies) {
    EXPECT_EQ(WordOf(1), L"INTERNAL");
    EXPECT_EQ(WordOf(2), L"CLONE");
    EXPECT_EQ(WordOf(4), L"EXTEND");
    EXPECT_EQ(WordOf(8), L"EXTERNAL");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DisplayModeWord, IsUnknownForAllOtherNumbersUpTo16WithALogLine) {
    for (unsigned topology : {0u, 3u, 5u, 6u, 7u, 9u, 10u, 11u, 12u, 13u, 14u, 15u, 16u}) {
        timeline.Clear();
        EXPECT_EQ(WordOf(topology), L"UNKNOWN");
        EXPECT_THAT(Log(), ElementsAre("log 3 GetUnknownDisplayMode:" + std::to_string(topology) +
                                       "(`anonymous-namespace'::GetDisplayMode)"));
    }
}

TEST_F(DisplayModeWord, IsLoggedAsAnUnsignedNumber) {
    EXPECT_EQ(WordOf(0xFFFFFFFF), L"UNKNOWN");
    EXPECT_THAT(Log(), ElementsAre("log 3 GetUnknownDisplayMode:4294967295"
                                   "(`anonymous-namespace'::GetDisplayMode)"));
}

}  // namespace
