// The reader that chunks are read back with.
#include "support/strict_json.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/utf8_sequence.h"

namespace {

using test_support::Json;
using test_support::ParseCompactJson;

TEST(StrictJson, ReadsNestedValuesInTheirOrder) {
    const Json json = ParseCompactJson(R"([{"b":"1","a":[]},{},-1.5e+3,true,null])");
    ASSERT_EQ(json.kind, Json::Kind::Array);
    ASSERT_EQ(json.items.size(), 5u);
    const auto& members = json.items[0].members;
    ASSERT_EQ(members.size(), 2u);
    EXPECT_EQ(members[0].first, "b");
    EXPECT_EQ(members[0].second.text, "1");
    EXPECT_EQ(members[0].second.kind, Json::Kind::String);
    EXPECT_EQ(members[1].first, "a");
    EXPECT_EQ(members[1].second.kind, Json::Kind::Array);
    EXPECT_EQ(json.items[1].kind, Json::Kind::Object);
    EXPECT_EQ(json.items[2].text, "-1.5e+3");
    EXPECT_EQ(json.items[3].text, "true");
    EXPECT_EQ(json.items[4].kind, Json::Kind::Literal);
}

TEST(StrictJson, TurnsEscapesIntoWhatTheyStandFor) {
    EXPECT_EQ(ParseCompactJson(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\ud83D\uDDA8")").text,
              "\"\\/\b\f\n\r\tA\xC3\xA9\xF0\x9F\x96\xA8");
    EXPECT_EQ(ParseCompactJson(R"("\u0000")").text, std::string(1, '\0'));
}

class RefusedByStrictJson : public testing::TestWithParam<std::string> {};

TEST_P(RefusedByStrictJson, Text) {
    EXPECT_THROW(ParseCompactJson(GetParam()), std::runtime_error) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(All, RefusedByStrictJson,
                         testing::Values("", "[", "]", "[1,]", "[,1]", "[1 ,2]", " 1", "1 ", "{}x",
                                         R"({"a"})", R"({"a":})", R"({"a":1,})", R"({a:1})",
                                         R"({"a":1,"a":2})", R"("a)", R"("\x")", R"("\u12")",
                                         R"("\u123g")", R"("\ud83d")", R"("\ud83dx")",
                                         R"("\udda8")", "\"\n\"", "\"\x1F\"", "\"\x80\"",
                                         "\"\xC0\x80\"", "\"\xC3\"", "\"\xED\xA0\x80\"",
                                         "\"\xF4\x90\x80\x80\"", "\"\xFF\"", "01", "-", "1.", ".5",
                                         "1e", "+1", "tru", "True", "NaN", "'a'"));

TEST(Utf8Sequence, IsBuiltAndMeasuredAtEachLength) {
    for (const auto& [codePoint, bytes] :
         std::initializer_list<std::pair<std::uint32_t, std::string>>{
             {0x7F, "\x7F"},
             {0x80, "\xC2\x80"},
             {0x7FF, "\xDF\xBF"},
             {0x800, "\xE0\xA0\x80"},
             {0xFFFF, "\xEF\xBF\xBF"},
             {0x10000, "\xF0\x90\x80\x80"},
             {0x10FFFF, "\xF4\x8F\xBF\xBF"}}) {
        EXPECT_EQ(test_support::Utf8Of(codePoint), bytes);
        EXPECT_EQ(test_support::Utf8SequenceLength(bytes + "x"), bytes.size());
    }
}

}  // namespace
