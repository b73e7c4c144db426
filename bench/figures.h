// What all benchmarks share: times, medians and the lines of the table.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace bench {

template <typename Action>
double milliseconds(const Action& action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    return time.count();
}

/// The upper one of the two middle values, if there are two.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

/// Prints a line of the table; no limit if that is 0.
inline void line(const char* what, double figure, double limit, const char* unit)
{
    std::printf("%-46s %10.3f %-3s", what, figure, unit);
    if (limit > 0)
        std::printf("  at most %-7g %s", limit, figure <= limit ? "yes" : "NO");
    std::printf("\n");
}

} // namespace bench
