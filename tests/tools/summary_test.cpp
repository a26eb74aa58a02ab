// The summary's statistics: a fixed histogram whose median and 99th
// percentile stay within half a percent of the exact values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "time_histogram.h"

using fingerdetect::TimeHistogram;
using fingerdetect::TimeStats;

namespace {

TimeStats exact_stats(std::vector<double> t) {
    double sum = 0;
    for (double v : t) sum += v;
    std::sort(t.begin(), t.end());
    const size_t n = t.size();
    return {sum / n, n % 2 == 1 ? t[n / 2] : (t[n / 2 - 1] + t[n / 2]) / 2,
            t[std::max<size_t>((99 * n + 99) / 100, 1) - 1]};
}

void expect_close(double estimate, double exact) {
    EXPECT_LE(std::fabs(estimate - exact), std::max(0.005 * exact, 0.0001))
        << estimate << " for " << exact;
}

}  // namespace

TEST(Summary, QuantilesWithinHalfAPercentAndAnExactMean) {
    std::vector<std::vector<double>> lists = {
        {5, 1, 3}, {4, 1, 3, 2}, {0.00002, 0.00005}, {2e4, 3e4, 1.0}, {7.25}};
    std::vector<double> spread;
    for (int i = 1; i <= 5000; ++i) spread.push_back(0.01 * std::pow(1.0031, i % 3001));
    lists.push_back(spread);
    for (const auto& list : lists) {
        TimeHistogram h;
        for (double t : list) h.add(t);
        const TimeStats exact = exact_stats(list);
        const TimeStats got = h.stats();
        SCOPED_TRACE(list.size());
        EXPECT_DOUBLE_EQ(got.mean, exact.mean);
        expect_close(got.median, exact.median);
        expect_close(got.p99, exact.p99);
    }
    EXPECT_EQ(TimeHistogram().stats().p99, 0);
}
