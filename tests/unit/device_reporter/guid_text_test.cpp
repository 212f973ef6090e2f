#include <windows.h>

#include <cerrno>

#include "device_reporter/device_text.h"
#include "simulation/import_redirection.h"
#include "unit/device_reporter/device_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::GuidToString;

class GuidText : public device_tests::DeviceTest {};

TEST_F(GuidText, IsUpperCaseInBracesWithTheFieldsInOrder) {
    const GUID guid = {
        0x89ABCDEF, 0x0123, 0x4567, {0x80, 0x91, 0xA2, 0xB3, 0xC4, 0xD5, 0xE6, 0xF7}};
    EXPECT_EQ(GuidToString(guid), L"{89ABCDEF-0123-4567-8091-A2B3C4D5E6F7}");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(GuidText, PadsEachFieldWithZeros) {
    EXPECT_EQ(GuidToString({}), L"{00000000-0000-0000-0000-000000000000}");
    EXPECT_EQ(GuidToString({0xA, 0xB, 0xC, {1, 2, 3, 4, 5, 6, 7, 8}}),
              L"{0000000A-000B-000C-0102-030405060708}");
}

TEST_F(GuidText, ShowsTheHighestValues) {
    EXPECT_EQ(GuidToString(
                  {0xFFFFFFFF, 0xFFFF, 0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}}),
              L"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}");
}

std::size_t sizeGiven = 0;

int FailToFormat(wchar_t* buffer, std::size_t size, const wchar_t*, ...) {
    sizeGiven = size;
    buffer[0] = L'\0';
    errno = EINVAL;
    return -1;
}

TEST_F(GuidText, IsEmptyWithALogLineWhenTheFormatterFails) {
    simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    if (!imports.Imports("swprintf_s")) {
        GTEST_SKIP() << "this compiler builds the formatter into the program";
    }
    imports.Redirect("swprintf_s", reinterpret_cast<void*>(&FailToFormat));
    EXPECT_EQ(GuidToString({}), L"");
    EXPECT_THAT(Log(), ElementsAre("log 3 GUID TO String failed(DeviceReporter::GuidToString)"));
    EXPECT_EQ(sizeGiven, 64u);
}

}  // namespace
