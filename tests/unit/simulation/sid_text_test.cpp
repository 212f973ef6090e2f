#include "simulation/sid_text.h"

#include <gtest/gtest.h>
#include <sddl.h>

namespace simulation {
namespace {

TEST(SidText, GivesTheBytesThatTheSystemGives) {
    for (const wchar_t* text : {L"S-1-5-18", L"S-1-5-21-2874105637-1390268184-3301657299-1104",
                                L"S-1-1-0", L"S-1-5-21-4294967295-0-1"}) {
        PSID real = nullptr;
        ASSERT_TRUE(ConvertStringSidToSidW(text, &real));
        const auto* bytes = static_cast<const BYTE*>(real);
        const std::vector<BYTE> expected(bytes, bytes + GetLengthSid(real));
        EXPECT_EQ(SidFromText(text), expected);
        LocalFree(real);
    }
}

TEST(SidText, RefusesEverythingElse) {
    for (const wchar_t* text :
         {L"", L"S-1", L"S-1-5", L"S-2-5-18", L"S-1-5-", L"S-1-5-18-", L"S-1-5-x", L"s-1-5-18",
          L"S-1-5-4294967296", L"S-1-281474976710656-1", L"S-1-5-18 ", L"S-1-5--18",
          L"S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15-16"}) {
        EXPECT_FALSE(SidFromText(text)) << "text of " << std::wstring(text).size() << " characters";
    }
}

}  // namespace
}  // namespace simulation
