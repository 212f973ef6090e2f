#include <string>

#include "device_reporter/edid_registry.h"
#include "unit/device_reporter/device_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::GetEditRegPath;

constexpr char kNoDisplay[] = "log 3 devicePath is error!(`anonymous-namespace'::GetEditRegPath)";
constexpr char kTooFewPieces[] =
    "log 3 devicePath format is error!(`anonymous-namespace'::GetEditRegPath)";

class EdidRegistryPath : public device_tests::DeviceTest {};

TEST_F(EdidRegistryPath, IsMadeOfTheFirstThreePieces) {
    EXPECT_EQ(GetEditRegPath(L"\\\\?\\DISPLAY#ABC1234#5&2a3b4c&0&UID4353"
                             L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}"),
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\ABC1234\\5&2a3b4c&0&UID4353"
              L"\\Device Parameters");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidRegistryPath, NeedsThreeNumberSigns) {
    for (const wchar_t* path :
         {L"\\\\?\\DISPLAY", L"\\\\?\\DISPLAY#ABC1234", L"\\\\?\\DISPLAY#ABC1234#5&2a3b4c"}) {
        timeline.Clear();
        EXPECT_EQ(GetEditRegPath(path), L"");
        EXPECT_THAT(Log(), ElementsAre(kTooFewPieces));
    }
    timeline.Clear();
    EXPECT_EQ(GetEditRegPath(L"\\\\?\\DISPLAY#ABC1234#5&2a3b4c#"),
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\ABC1234\\5&2a3b4c\\Device Parameters");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(EdidRegistryPath, IgnoresWhatFollowsTheThirdNumberSign) {
    EXPECT_EQ(GetEditRegPath(L"DISPLAY#A#B#C#D\\E"),
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\A\\B\\Device Parameters");
}

TEST_F(EdidRegistryPath, DoesNotCountNumberSignsBeforeTheMarker) {
    EXPECT_EQ(GetEditRegPath(L"#\\#DISPLAY#A#B#"),
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\A\\B\\Device Parameters");
    timeline.Clear();
    EXPECT_EQ(GetEditRegPath(L"###DISPLAY#A#B"), L"");
    EXPECT_THAT(Log(), ElementsAre(kTooFewPieces));
}

TEST_F(EdidRegistryPath, BeginsAtTheFirstMarkerAndTakesThePieceAroundItWhole) {
    EXPECT_EQ(GetEditRegPath(L"XDISPLAYX#DISPLAY#B#C#"),
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAYX\\DISPLAY\\B\\Device Parameters");
}

TEST_F(EdidRegistryPath, KeepsEmptyPieces) {
    EXPECT_EQ(GetEditRegPath(L"DISPLAY###"),
              L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\\\\\Device Parameters");
}

TEST_F(EdidRegistryPath, IsEmptyForPathsThatAreNotOfDisplays) {
    for (const wchar_t* path : {L"", L"\\\\?\\USB#VID_046D#5&2a3b4c#{0}", L"\\\\?\\display#A#B#C",
                                L"\\\\?\\Display#A#B#C", L"DISPLA"}) {
        timeline.Clear();
        EXPECT_EQ(GetEditRegPath(path), L"");
        EXPECT_THAT(Log(), ElementsAre(kNoDisplay));
    }
}

}  // namespace
