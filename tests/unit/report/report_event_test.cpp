#include "report/report_event.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

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

TEST_F(SentEvent, HasItsIdAndItsFieldsAsTheyAreInTheirOrder) {
    // Any number, and values of any bytes, empty, or under one key.
    constexpr std::int32_t kId = std::numeric_limits<std::int32_t>::min();
    const std::string bytes("a\0\xE9\xFF", 4);
    SendEvent(kId, {{"k", bytes}, {"k", ""}, {"", "c"}, {"a", "d"}});
    EXPECT_EQ(TheEvent().id, kId);
    EXPECT_EQ(TheEvent().fields, (EventFields{{"k", bytes}, {"k", ""}, {"", "c"}, {"a", "d"}}));
}

TEST_F(SentEvent, IsNotCheckedAgainstTheLimitsOfTheEventLibrary) {
    const std::string key(XeEvent::MAX_KEY_LEN + 1, 'k');
    const std::string value(XeEvent::MAX_VALUE_LEN + 1, 'x');
    SendEvent(1, std::vector<EventField>(XeEvent::MAX_PAIR_NUM + 1, {key.c_str(), value}));
    EXPECT_EQ(TheEvent().fields, EventFields(XeEvent::MAX_PAIR_NUM + 1, {key, value}));
    EXPECT_FALSE(events.Warnings().empty());  // The library's own.
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

}  // namespace
