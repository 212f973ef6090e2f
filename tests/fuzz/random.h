// Where the choices of a fuzz input come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace fuzz {

/// The choices of one case. The same seed and case number give the same choices with every
/// compiler, so the library's distributions, which differ, are not used.
class Random {
public:
    Random(std::uint64_t seed, std::uint64_t caseNumber)
        : engine(seed * 0x9E3779B97F4A7C15u + caseNumber) {}

    std::uint64_t Bits() { return engine(); }

    /// 0 to `limit` - 1; `limit` is not 0.
    std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(engine() % limit); }

    /// Both ends are possible.
    std::size_t Between(std::size_t least, std::size_t most) {
        return least + Below(most - least + 1);
    }

    /// True once in so many times.
    bool OneIn(std::size_t times) { return Below(times) == 0; }

    /// One element of an array or container.
    template <class Choices>
    const auto& Pick(const Choices& choices) {
        return *(std::begin(choices) + static_cast<std::ptrdiff_t>(Below(std::size(choices))));
    }

private:
    std::mt19937_64 engine;
};

}  // namespace fuzz
