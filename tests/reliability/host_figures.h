// What the plug-in costs its process, over time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace reliability_test {

/// Of this process, at one moment.
struct HostFigures {
    std::size_t handles = 0;
    std::size_t threads = 0;
    std::size_t windowClasses = 0;  ///< Of the device monitor: 0 or 1.
    std::size_t privateKilobytes = 0;
};

HostFigures MeasureHost();

/// Samples of one figure, in order.
class FigureCourse {
public:
    explicit FigureCourse(std::string name) : figureName(std::move(name)) {}

    void Add(std::size_t sample) { samples.push_back(sample); }
    std::size_t First() const { return samples.front(); }
    std::size_t Median() const;
    std::size_t Last() const { return samples.back(); }

    /// How much more the latest samples are than those in the middle. The medians of a few are
    /// compared, so that a moment's outlier is no growth.
    std::ptrdiff_t Growth() const;

    /// "handles: first 61, median 63, last 63"
    std::string Text() const;

private:
    std::string figureName;
    std::vector<std::size_t> samples;
};

struct Growth {
    std::size_t handles = 0;
    std::size_t kilobytes = 0;
};

/// All figures, sampled together.
class HostCourse {
public:
    /// `known` is taken off: what the figures contain for a known cause.
    void Sample(Growth known = {});
    /// Prints each figure, and returns in words those that are not flat: empty when all are.
    /// `slack` is by how much the end may exceed the middle.
    std::string Verdict(Growth slack) const;

private:
    FigureCourse handles{"handles"};
    FigureCourse threads{"threads"};
    FigureCourse windowClasses{"window classes"};
    FigureCourse memory{"private kilobytes"};
};

}  // namespace reliability_test
