#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tarvik::bench {

using Clock = std::chrono::steady_clock;

inline double nanoseconds(std::chrono::duration<double, std::nano> time) {
    return time.count();
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

// Nanoseconds for one unit of work.
struct Costs {
    double subject = 0.0;
    double reference = 0.0;
};

// A round that runs both, each telling its own cost. Whoever goes second may find warm caches: they take
// turns.
template <typename Subject, typename Reference>
auto inTurn(const Subject& subject, const Reference& reference) {
    return [subject, reference, subjectFirst = false]() mutable {
        subjectFirst = !subjectFirst;
        Costs costs;
        if (subjectFirst)
            costs.subject = subject();
        costs.reference = reference();
        if (!subjectFirst)
            costs.subject = subject();
        return costs;
    };
}

// Runs the round once unmeasured, then so many times measured. The ratio is the median of the rounds' own
// ratios, so that a spell in which the machine is busy slows both sides of a few rounds and decides nothing.
// A goal is met by a ratio that is not above it. What has no goal explains another figure: a comparison,
// which the table of all ratios leaves out.
template <typename Round>
void compare(benchmark::State& state, int rounds, std::optional<double> goal, Round round) {
    round();
    std::vector<double> ratios;
    std::vector<double> subjects;
    std::vector<double> references;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < rounds; ++i) {
            const Costs costs = round();
            ratios.push_back(costs.subject / costs.reference);
            subjects.push_back(costs.subject);
            references.push_back(costs.reference);
        }
    }
    state.counters[goal ? "ratio" : "comparison"] = median(ratios);
    if (goal)
        state.counters["goal"] = *goal;
    state.counters["subject_ns"] = median(subjects);
    state.counters["reference_ns"] = median(references);
}

// The whole program after its set-up. A benchmark repeats its rounds itself: one iteration is enough.
inline void run(int argc, char** argv) {
    std::string once = "--benchmark_min_time=0";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, once.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks();
}

} // namespace tarvik::bench
