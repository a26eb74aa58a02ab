#include "summary.h"

#include <gtest/gtest.h>

#include <vector>

using fingerdetect::RunSummary;
using fingerdetect::time_stats;

TEST(Summary, MedianAndNearestRankPercentile) {
    const auto odd = time_stats({5, 1, 3});
    EXPECT_EQ(odd.mean, 3);
    EXPECT_EQ(odd.median, 3);
    EXPECT_EQ(odd.p99, 5);
    EXPECT_EQ(time_stats({4, 1, 3, 2}).median, 2.5);
    // 200 values 1..200: the 198th smallest is the 99th percentile.
    std::vector<double> many;
    for (int i = 200; i >= 1; --i) many.push_back(i);
    EXPECT_EQ(time_stats(many).p99, 198);
    many.resize(100);  // 200..101: the 99th smallest
    EXPECT_EQ(time_stats(many).p99, 199);
    EXPECT_EQ(time_stats({}).p99, 0);
}

TEST(Summary, CountsReportsAndTheFirst) {
    RunSummary s;
    s.add(0, 0, 1.0);
    s.add(1, 1, 1.0);
    s.add(2, 1, 1.0);
    EXPECT_EQ(s.frames(), 3);
    EXPECT_EQ(s.reports(), 2);
    EXPECT_EQ(s.first_report(), 1);
    EXPECT_EQ(RunSummary().first_report(), -1);
}
