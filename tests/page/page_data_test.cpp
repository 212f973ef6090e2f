// What the page's script gets to read.
#include "host/page/page_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/page/page_source.h"
#include "host/page/page_writer.h"
#include "host/page/source_hash.h"

namespace host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::int64_t kMinute = 60000;
constexpr std::int64_t kDay = 1440 * kMinute;

RecordedEvent List(std::int64_t time, const std::vector<std::string>& keys) {
    RecordedEvent event{time, {kDeviceListEventId, {}}};
    for (const std::string& key : keys) {
        event.event.fields.push_back({key, "[]"});
    }
    return event;
}

RecordedEvent Bios(std::int64_t time, const std::string& value) {
    return {time, {kBiosInfoEventId, {{"Product", value}}}};
}

TEST(DeviceListNumbers, AreTheSameForThePartsOfAList) {
    EXPECT_THAT(NumberDeviceLists({Bios(0, ""), List(kDay, {"HIDList", "PrinterList"}),
                                   Bios(kDay, ""), List(kDay + kMinute, {"HIDList"}),
                                   List(2 * kDay + 2 * kMinute, {"HIDList"})}),
                ElementsAre(std::nullopt, 0, std::nullopt, 0, 1));
}

TEST(DeviceListNumbers, GoOnWhenAKeyComesBackThoughTheClockWasSet) {
    EXPECT_THAT(NumberDeviceLists({List(kDay, {"HIDList", "PrinterList"}), List(kDay, {"HIDList"}),
                                   List(kDay, {"HIDList", "PrinterList"})}),
                ElementsAre(0, 0, 1));
}

TEST(PageData, HoldsWhatWasSentAndLogged) {
    RunRecord record{"A run", 3, {Bios(5, "X\xFC"), List(6, {"HIDList"})}, {{7, 4, "line"}}};
    EXPECT_EQ(nlohmann::json::parse(PageData(record)), nlohmann::json::parse(R"({
        "origin": "A run", "firstList": 3,
        "events": [
            {"time": 5, "id": 992614500, "bytes": 9, "fields": [["Product", "Xü", 2]]},
            {"time": 6, "id": 992614533, "bytes": 9, "fields": [["HIDList", "[]", 2]], "list": 0}],
        "log": [{"time": 7, "level": 4, "text": "line"}]})"));
}

TEST(PageData, HoldsNothingThatMeansSomethingToMarkupWhateverATextIs) {
    const std::string evil = "</script><!--<script>&amp;\xE2\x80\xA8\xE2\x80\xA9'\"\\";
    RunRecord record{evil, std::nullopt, {Bios(0, evil)}, {{0, 3, evil}}};
    const std::string data = PageData(record);
    EXPECT_EQ(data.find_first_of("<>&"), std::string::npos);
    for (const char character : data) {
        ASSERT_GE(character, ' ');
        ASSERT_LE(character, '~');
    }
    const auto parsed = nlohmann::json::parse(data);
    EXPECT_EQ(parsed.at("origin"), evil);
    EXPECT_EQ(parsed.at("events")[0].at("fields")[0][1], evil);
    EXPECT_EQ(parsed.at("log")[0].at("text"), evil);
}

TEST(SourceHash, IsTheOneThatBrowsersCompute) {
    EXPECT_EQ(SourceHash("abc"), "sha256-ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
}

TEST(Page, AllowsItsOwnStyleAndScriptAndNothingElse) {
    EXPECT_THAT(MakePage({}),
                HasSubstr("content=\"default-src 'none'; style-src '" + SourceHash(kPageStyle) +
                          "'; script-src '" + SourceHash(kPageScript) +
                          "'; base-uri 'none'; form-action 'none'\""));
}

TEST(Page, IsFilledInWhatItsTemplateLeavesOpenOnly) {
    RunRecord record{"@SCRIPT@ @POLICY@", std::nullopt, {}, {}};
    const std::string page = MakePage(record);
    EXPECT_THAT(page, HasSubstr(R"("origin":"@SCRIPT@ @POLICY@")"));
    EXPECT_THAT(page, HasSubstr("<script>" + std::string(kPageScript) + "</script>"));
    EXPECT_THAT(page, HasSubstr("<style>" + std::string(kPageStyle) + "</style>"));
}

TEST(Page, MakesElementsWithoutReadingMarkup) {
    for (const char* const word : {"innerHTML", "outerHTML", "insertAdjacentHTML", "document.write",
                                   "eval(", "Function(", "DOMParser", "createContextualFragment",
                                   "setHTML", "srcdoc", "fetch(", "XMLHttpRequest", "import("}) {
        EXPECT_THAT(std::string(kPageScript), Not(HasSubstr(word)));
    }
    EXPECT_THAT(std::string(kPageStyle), Not(HasSubstr("url(")));
}

}  // namespace
}  // namespace host
