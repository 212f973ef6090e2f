// Timing a piece of the product against its floor.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "allocation_count.h"

namespace benchmarks {

/// Seconds that `work` takes. Letting go of what it returns is not counted.
template <class Work>
double Time(Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    auto kept = work();
    const auto end = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(kept);
    return std::chrono::duration<double>(end - begin).count();
}

/// The run that a quarter is faster than. What else happens on the machine mostly makes slower, so
/// this is less of a lottery than the middle one, and than the fastest where runs are of two kinds.
inline double LowerQuartile(std::vector<double> seconds) {
    std::sort(seconds.begin(), seconds.end());
    return seconds.at((seconds.size() - 1) / 4);
}

/// Runs both in turn, each first half of the time. Both return their seconds, of which the lower
/// quartiles count. Leaves the counters `ratio`, `subject_us`, `floor_us` and `item_us`, which is
/// of one of the subject's `items`.
template <class Subject, class Floor>
void RunPairedSeconds(benchmark::State& state, Subject subject, Floor floor, double items = 1) {
    std::vector<double> subjectSeconds;
    std::vector<double> floorSeconds;
    bool floorFirst = false;
    for (auto _ : state) {
        floorFirst = !floorFirst;
        if (floorFirst) {
            floorSeconds.push_back(floor());
        }
        subjectSeconds.push_back(subject());
        if (!floorFirst) {
            floorSeconds.push_back(floor());
        }
        state.SetIterationTime(subjectSeconds.back());
    }
    const double microseconds = LowerQuartile(subjectSeconds) * 1e6;
    const double floorMicroseconds = LowerQuartile(floorSeconds) * 1e6;
    state.counters["ratio"] = microseconds / floorMicroseconds;
    state.counters["subject_us"] = microseconds;
    state.counters["floor_us"] = floorMicroseconds;
    state.counters["item_us"] = microseconds / items;
}

/// The same for whatever returns something that keeps its results alive; counts the allocations of
/// an item as well. What is only done once has been done before.
template <class Subject, class Floor>
void RunPaired(benchmark::State& state, Subject subject, Floor floor, double items = 1) {
    RunPairedSeconds(
        state, [&] { return Time(subject); }, [&] { return Time(floor); }, items);
    state.counters["item_allocations"] = CountAllocations(subject) / items;
    state.counters["floor_item_allocations"] = CountAllocations(floor) / items;
}

/// How a benchmark of milliseconds or less is repeated: so often that on a busy machine, too, some
/// runs of each repetition are undisturbed.
inline void Repeat(benchmark::internal::Benchmark* paired) {
    paired->UseManualTime()->Iterations(40)->Repetitions(15)->Unit(benchmark::kMicrosecond);
}

}  // namespace benchmarks
