#include "util/scoped_handle.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Numbers = std::vector<int>;

Numbers closed;

struct NumberTraits {
    using Type = int;
    static Type Invalid() noexcept { return -1; }
    static void Close(Type number) noexcept { closed.push_back(number); }
};
using ScopedNumber = ScopedHandle<NumberTraits>;

static_assert(!std::is_copy_constructible_v<ScopedNumber>);
static_assert(!std::is_copy_assignable_v<ScopedNumber>);
static_assert(!std::is_convertible_v<int, ScopedNumber>);

class Handle : public testing::Test {
protected:
    Handle() { closed.clear(); }
};

TEST_F(Handle, IsClosedOnceAtTheEndOfItsScope) {
    {
        const ScopedNumber number(7);
        EXPECT_TRUE(number);
        EXPECT_EQ(number.Get(), 7);
        EXPECT_EQ(closed, Numbers{});
    }
    EXPECT_EQ(closed, Numbers{7});
}

TEST_F(Handle, IsNotClosedWhenThereIsNone) {
    {
        const ScopedNumber none;
        const ScopedNumber invalid(-1);
        EXPECT_FALSE(none);
        EXPECT_FALSE(invalid);
        EXPECT_EQ(none.Get(), -1);
    }
    EXPECT_EQ(closed, Numbers{});
}

TEST_F(Handle, MayBeZero) {
    EXPECT_TRUE(ScopedNumber(0));
    EXPECT_EQ(closed, Numbers{0});
}

TEST_F(Handle, BelongsToTheNewOwnerAfterAMove) {
    {
        ScopedNumber first(7);
        const ScopedNumber second(std::move(first));
        EXPECT_FALSE(first);
        EXPECT_EQ(second.Get(), 7);
    }
    EXPECT_EQ(closed, Numbers{7});
}

TEST_F(Handle, IsClosedWhenAnotherIsMovedOverIt) {
    {
        ScopedNumber target(7);
        ScopedNumber source(8);
        target = std::move(source);
        EXPECT_EQ(closed, Numbers{7});
        EXPECT_EQ(target.Get(), 8);
        EXPECT_FALSE(source);
    }
    EXPECT_EQ(closed, (Numbers{7, 8}));
}

TEST_F(Handle, StaysWithAnOwnerThatIsMovedToItself) {
    {
        ScopedNumber number(7);
        ScopedNumber& same = number;
        number = std::move(same);
        EXPECT_EQ(number.Get(), 7);
        EXPECT_EQ(closed, Numbers{});
    }
    EXPECT_EQ(closed, Numbers{7});
}

TEST_F(Handle, IsClosedByAReset) {
    ScopedNumber number(7);
    number.Reset(8);
    EXPECT_EQ(number.Get(), 8);
    EXPECT_EQ(closed, Numbers{7});
    number.Reset();
    EXPECT_FALSE(number);
    EXPECT_EQ(closed, (Numbers{7, 8}));
    number.Reset();
    EXPECT_EQ(closed, (Numbers{7, 8}));
}

TEST_F(Handle, IsNotClosedOnceItWasReleased) {
    {
        ScopedNumber number(7);
        EXPECT_EQ(number.Release(), 7);
        EXPECT_FALSE(number);
    }
    EXPECT_EQ(closed, Numbers{});
}

}  // namespace
