#pragma once

#include <algorithm>
#include <boost/chrono/system_clocks.hpp>
#include <boost/chrono/thread_clock.hpp>
#include <vector>

#include <benchmark/benchmark.h>

namespace benchmarks {

template <class Clock, class Work>
double microsecondsOf(Work& work) {
    const auto start = Clock::now();
    work();
    return boost::chrono::duration<double, boost::micro>(Clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs `subject` and its `yardstick` in turn, round by round, and reports the median microseconds of each and their
/// ratio. `Clock` is the thread's CPU time for what one thread computes, `boost::chrono::steady_clock` where waiting
/// counts. `goal` is the ratio that must not be exceeded, printed beside the one measured.
template <class Clock = boost::chrono::thread_clock, class Subject, class Yardstick>
void reportRatio(benchmark::State& state, double goal, Subject subject, Yardstick yardstick) {
    std::vector<double> subjectTimes;
    std::vector<double> yardstickTimes;
    for (auto _ : state) {
        yardstickTimes.push_back(microsecondsOf<Clock>(yardstick));
        subjectTimes.push_back(microsecondsOf<Clock>(subject));
        state.SetIterationTime(subjectTimes.back() * 1e-6);
    }
    state.counters["subject_us"] = median(subjectTimes);
    state.counters["yardstick_us"] = median(yardstickTimes);
    state.counters["ratio"] = median(subjectTimes) / median(yardstickTimes);
    state.counters["goal"] = goal;
}

}  // namespace benchmarks
