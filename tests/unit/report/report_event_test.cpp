#include "report/report_event.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "platform/xeevent.h"
#include "support/recorded_events.h"

namespace {

using test_support::Event;
using test_support::EventFields;

class SentEvent : public testing::Test {
protected:
    /// The only event so far.
    Event TheEvent() const {
        const std::vector<Event> all = events.All();
        EXPECT_EQ(all.size(), 1u);
        return all.empty() ? Event{} : all.front();
    }

    test_support::Timeline timeline;
    test_support::RecordedEvents events{timeline};
};

TEST_F(SentEvent, HasItsIdAndItsFieldsInTheirOrder) {
    SendEvent(992614500, {{"Product", "p"}, {"String7", "s"}, {"Version", "v"}});
    EXPECT_EQ(TheEvent().id, 992614500);
    EXPECT_EQ(TheEvent().fields,
              (EventFields{{"Product", "p"}, {"String7", "s"}, {"Version", "v"}}));
}

TEST_F(SentEvent, KeepsFieldsThatAreEmptyOrShareAKey) {
    SendEvent(1, {{"k", ""}, {"k", "b"}, {"", "c"}});
    EXPECT_EQ(TheEvent().fields, (EventFields{{"k", ""}, {"k", "b"}, {"", "c"}}));
}

TEST_F(SentEvent, KeepsEveryByteOfAValue) {
    const std::string value("a\0\xE9\xFF", 4);
    SendEvent(1, {{"k", value}});
    EXPECT_EQ(TheEvent().fields, (EventFields{{"k", value}}));
}

TEST_F(SentEvent, TakesAnySigned32BitId) {
    SendEvent(std::numeric_limits<std::int32_t>::min(), {});
    EXPECT_EQ(TheEvent().id, std::numeric_limits<std::int32_t>::min());
    EXPECT_TRUE(TheEvent().fields.empty());
}

TEST_F(SentEvent, IsNotCheckedAgainstTheLimitsOfTheEventLibrary) {
    const std::string value(XeEvent::MAX_VALUE_LEN + 1, 'x');
    SendEvent(1, {{"k", value}});
    EXPECT_EQ(TheEvent().fields, (EventFields{{"k", value}}));
    EXPECT_EQ(events.Warnings().size(), 1u);  // The library's own.
}

TEST_F(SentEvent, IsReportedOnTheCallersThreadBeforeTheCallReturns) {
    SendEvent(7, {});
    timeline.Note("returned");
    EXPECT_EQ(timeline.Texts(), (std::vector<std::string>{"event 7", "returned"}));
    EXPECT_EQ(TheEvent().threadId, GetCurrentThreadId());
}

template <typename... Types>
constexpr bool kAreUnsigned64 = (std::is_same_v<Types, const std::uint64_t> && ...);
static_assert(kAreUnsigned64<decltype(XeEvent::MAX_KEY_LEN), decltype(XeEvent::MAX_PAIR_NUM),
                             decltype(XeEvent::MAX_PATH_LEN), decltype(XeEvent::MAX_VALUE_LEN),
                             decltype(XeEvent::MAX_FILE_NUM), decltype(XeEvent::MAX_ARR_SIZE)>);
static_assert(std::is_same_v<decltype(XeEvent::INVALID_NUM), const std::int32_t>);

TEST(EventLimits, AreThoseOfTheEventLibrary) {
    EXPECT_EQ(XeEvent::MAX_KEY_LEN, 32u);
    EXPECT_EQ(XeEvent::MAX_PAIR_NUM, 256u);
    EXPECT_EQ(XeEvent::MAX_PATH_LEN, 256u);
    EXPECT_EQ(XeEvent::MAX_VALUE_LEN, 1024u);
    EXPECT_EQ(XeEvent::MAX_FILE_NUM, 10u);
    EXPECT_EQ(XeEvent::MAX_ARR_SIZE, 100u);
    EXPECT_EQ(XeEvent::INVALID_NUM, -1);
}

}  // namespace
