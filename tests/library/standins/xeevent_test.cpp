#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "library/standins/temporary_file.h"
#include "standins/xeevent/xeevent_control.h"

namespace {

using standins_test::StreamCapture;

constexpr std::size_t kMaxKeyLength = XeEvent::MAX_KEY_LEN;
constexpr std::size_t kMaxValueLength = XeEvent::MAX_VALUE_LEN;
constexpr std::size_t kMaxPairs = XeEvent::MAX_PAIR_NUM;

struct ReportedEvent {
    int id;
    std::vector<std::pair<std::string, std::string>> fields;

    bool operator==(const ReportedEvent& other) const {
        return id == other.id && fields == other.fields;
    }
};

void AppendEvent(void* context, int eventId, const XeEventField* fields, size_t fieldCount) {
    ReportedEvent event = {eventId, {}};
    for (size_t i = 0; i < fieldCount; ++i) {
        event.fields.emplace_back(std::string(fields[i].key, fields[i].keyLength),
                                  std::string(fields[i].value, fields[i].valueLength));
    }
    static_cast<std::vector<ReportedEvent>*>(context)->push_back(event);
}

void AppendWarning(void* context, const char* text) {
    static_cast<std::vector<std::string>*>(context)->emplace_back(text);
}

class Xeevent : public testing::Test {
protected:
    void SetUp() override {
        XeEvent_Reset();
        XeEvent_SetSink(&AppendEvent, &events);
        XeEvent_SetWarningSink(&AppendWarning, &warnings);
    }
    void TearDown() override { XeEvent_Reset(); }

    std::vector<ReportedEvent> events;
    std::vector<std::string> warnings;
};

TEST_F(Xeevent, HandsIdAndFieldsToTheSinkInTheOrderOfTheirPutting) {
    XeEvent event(992614500);
    event.PutString("Version", "1.02").PutString("Product", "").PutString("Version", "again");
    XeView::Report(event);

    const ReportedEvent expected = {992614500,
                                    {{"Version", "1.02"}, {"Product", ""}, {"Version", "again"}}};
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0], expected);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(Xeevent, HandsOverBytesUnchangedZerosIncluded) {
    XeEvent event(-5);
    event.PutString("raw", std::string("a\0\xFF", 3));
    XeView::Report(event);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].id, -5);
    EXPECT_EQ(events[0].fields[0].second, std::string("a\0\xFF", 3));
}

TEST_F(Xeevent, PutStringReturnsTheEventItself) {
    XeEvent event(1);
    EXPECT_EQ(&event.PutString("mode", "OPEN_MODE"), &event);
}

TEST_F(Xeevent, SelfAssignmentLeavesTheEventUnchanged) {
    XeEvent event(992614518);
    event = event.PutString("mode", "OPEN_MODE");
    event = event.PutString("status", "1");
    XeView::Report(event);

    const ReportedEvent expected = {992614518, {{"mode", "OPEN_MODE"}, {"status", "1"}}};
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0], expected);
}

TEST_F(Xeevent, AssignmentCopiesIdAndFields) {
    XeEvent target(1);
    target.PutString("old", "field");
    XeEvent source(2);
    source.PutString("new", "field");
    target = source;
    source.PutString("later", "field");
    XeView::Report(target);

    const ReportedEvent expected = {2, {{"new", "field"}}};
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0], expected);
}

TEST_F(Xeevent, TakesAKeyAndAValueUpToTheirLimitsWithoutWarning) {
    XeEvent event(1);
    event.PutString(std::string(kMaxKeyLength, 'k'), std::string(kMaxValueLength, 'v'));
    XeView::Report(event);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(Xeevent, WarnsOfAKeyThatIsTooLongAndDeliversTheEvent) {
    XeEvent event(12);
    event.PutString(std::string(kMaxKeyLength + 1, 'k'), "v");
    XeView::Report(event);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0], "event 12: the key \"" + std::string(kMaxKeyLength + 1, 'k') +
                               "\" has 33 bytes, more than the 32 that the event service takes");
    EXPECT_EQ(events.size(), 1u);
}

TEST_F(Xeevent, WarnsOfAValueThatIsTooLongAndDeliversItWhole) {
    XeEvent event(12);
    event.PutString("ECLog", std::string(kMaxValueLength + 1, 'v'));
    XeView::Report(event);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0],
              "event 12: the value of \"ECLog\" has 1025 bytes, more than the 1024 that the event "
              "service takes");
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].fields[0].second.size(), kMaxValueLength + 1);
}

TEST_F(Xeevent, WarnsOfTooManyFieldsAndDeliversThemAll) {
    XeEvent event(12);
    for (std::size_t i = 0; i < kMaxPairs; ++i) {
        event.PutString("key", "value");
    }
    XeView::Report(event);
    EXPECT_TRUE(warnings.empty());

    event.PutString("key", "value");
    XeView::Report(event);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0],
              "event 12: it has 257 fields, more than the 256 that the event service takes");
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].fields.size(), kMaxPairs + 1);
}

TEST_F(Xeevent, WarnsOnStandardErrorByDefault) {
    XeEvent_SetWarningSink(nullptr, nullptr);
    const StreamCapture errors(STD_ERROR_HANDLE);
    XeEvent event(12);
    event.PutString("ECLog", std::string(kMaxValueLength + 1, 'v'));
    XeView::Report(event);
    EXPECT_EQ(errors.Bytes(),
              "xeevent: event 12: the value of \"ECLog\" has 1025 bytes, more than the 1024 that "
              "the event service takes\n");
}

}  // namespace
