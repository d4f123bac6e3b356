// Two ways of doing the same thing, timed side by side.
#pragma once

#include <windows.h>

#include <algorithm>
#include <vector>

namespace kzp::bench {

inline double Median(std::vector<double> values) {
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Microseconds that `work` takes.
template <class Work>
double Time(Work&& work) {
    LARGE_INTEGER frequency, before, after;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&before);
    work();
    QueryPerformanceCounter(&after);
    return 1e6 * static_cast<double>(after.QuadPart - before.QuadPart) /
           static_cast<double>(frequency.QuadPart);
}

struct Comparison {
    double ours;   // median, microseconds
    double bare;   // median, microseconds
    double ratio;  // median of the rounds' own ratios: what drifts during the run does not show
};

// Times both twice in every round, in the order ours-bare-bare-ours and the other way round in turn;
// `between` runs untimed after each. A result above `limit` is not believed at once: it must stand after four
// times as many rounds, for on a busy machine few rounds say little.
template <class Ours, class Bare, class Between>
Comparison Compare(size_t rounds, double limit, Ours&& ours, Bare&& bare, Between&& between) {
    std::vector<double> ourTimes, bareTimes, ratios;
    const auto time = [&](auto& work, std::vector<double>& times) {
        times.push_back(Time(work));
        between();
        return times.back();
    };
    const auto round = [&](bool oursFirst) {
        double ourSum = 0, bareSum = 0;
        for (const bool isOurs : {oursFirst, !oursFirst, !oursFirst, oursFirst}) {
            if (isOurs)
                ourSum += time(ours, ourTimes);
            else
                bareSum += time(bare, bareTimes);
        }
        ratios.push_back(ourSum / bareSum);
    };
    ours();  // first calls load and cache what later ones find
    between();
    bare();
    between();
    while (ratios.size() < rounds || (ratios.size() < 4 * rounds && Median(ratios) > limit))
        round(ratios.size() % 2 == 0);
    return {Median(ourTimes), Median(bareTimes), Median(ratios)};
}

}  // namespace kzp::bench
