// A global locale that shows whether somebody forgot that users have one.
#pragma once

#include <locale>

namespace test_support {

/// While it lives, the global C++ locale writes 127 as 1.2.7, in narrow and wide streams.
class GroupingLocale {
public:
    GroupingLocale()
        : previous(std::locale::global(std::locale(
              std::locale(std::locale::classic(), new Grouping<char>), new Grouping<wchar_t>))) {}
    ~GroupingLocale() { std::locale::global(previous); }
    GroupingLocale(const GroupingLocale&) = delete;
    GroupingLocale& operator=(const GroupingLocale&) = delete;

private:
    template <class Character>
    struct Grouping : std::numpunct<Character> {
        Character do_thousands_sep() const override { return Character('.'); }
        std::string do_grouping() const override { return "\1"; }
    };

    std::locale previous;
};

}  // namespace test_support
