// Access to a private data member of a class that a test has to look into.
#pragma once

namespace test_support {

/// An explicit instantiation may name private members; this one makes the member's address
/// available to the test, and the class needs no friend:
///
///     struct Tick {
///         using Type = std::int32_t TimerReportMgr::*;
///         friend Type Address(Tick);
///     };
///     template struct test_support::PrivateMember<Tick, &TimerReportMgr::tickHours_>;
///
///     std::int32_t tick = manager.*Address(Tick{});
template <class Tag, typename Tag::Type Pointer>
struct PrivateMember {
    friend typename Tag::Type Address(Tag) { return Pointer; }
};

}  // namespace test_support
