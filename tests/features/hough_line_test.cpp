#include <gtest/gtest.h>

#include <algorithm>

#include "common/region_grid.h"

// Each scene is an outline on a 240 x 134 grid (hough_diag 274); the box is
// its extent.
TEST(HoughLine, StraightSegmentGivesItsVotesAndRun) {
    // An L: 100 cells on row 60, 40 below its left end on column 20, and a
    // stray cell on row 59.
    ScopedDetector d(240, 134);
    ASSERT_EQ(d->hough_diag, 274);
    d->edge_count = draw(d, d->edge_map, [](int r, int c) {
        return (r == 60 && c >= 20 && c < 120) || (c == 20 && r > 60 && r <= 100) ||
               (r == 59 && c == 150);
    });
    const double score = d->HoughLine();
    // Votes, angle, rho index and longest run of the main line, then of the
    // second. Row 59 lies half a step off the row; the distance is truncated
    // before the test, so it counts as on the line and starts the run. The
    // column has 41 votes with the corner cell, which the rest of row 60 cuts
    // off from its run; the run carries from row to row.
    EXPECT_EQ(
        (std::vector<int>{d->peak_votes, d->peak_angle, d->peak_rho, d->line_longest_run,
                          d->second_votes, d->second_angle, d->second_rho, d->second_longest_run}),
        (std::vector<int>{100, 0, 60 + 274, 101, 41, 90, 20 + 274, 40}));
    // Centre over flanks of the vote profile, squared, times votes per
    // outline cell and the profile's variance.
    EXPECT_NEAR(score, 8.6155449, 1e-6);
    // Around angle 0 the neighbourhood wraps to the last angles.
    EXPECT_EQ(d->near_angles[0], 165);
    EXPECT_EQ(d->near_angles[30], 15);
}

TEST(HoughLine, TiesKeepTheFirstCellOfEachScanOrder) {
    // 30 cells on an anti-diagonal (angle 45, rho index 415) and 30 on a
    // diagonal (angle 135, rho index 345), four rows apart so that the
    // neighbouring angles spread them; then a long row (angle 0) on top.
    for (bool row : {false, true}) {
        ScopedDetector d(240, 134);
        d->edge_count = draw(d, d->edge_map, [&](int r, int c) {
            return (r % 4 == 1 && r >= 5 && r <= 121 && c == 200 - r) ||
                   (r % 4 == 3 && r >= 7 && r <= 123 && c == r + 101) ||
                   (row && r == 125 && c >= 100 && c < 200);
        });
        d->HoughLine();
        ASSERT_EQ(d->hough_acc[415 * 180 + 45], 30);
        ASSERT_EQ(d->hough_acc[345 * 180 + 135], 30);
        // The peak scan runs rho outer, so the smaller rho index wins; the
        // second scan runs angle outer, so the smaller angle wins.
        EXPECT_EQ(row ? d->second_angle : d->peak_angle, row ? 45 : 135);
    }
}

TEST(HoughLine, EachVoteStartsFromAnEmptyAccumulator) {
    // A detector that voted a far corner (spare row) and a long row before
    // holds, after voting a short column, exactly the accumulator of a fresh
    // detector voting that column alone.
    auto far_and_row = [](int r, int c) { return (r == 133 && c == 239) || (r == 10 && c < 200); };
    auto column = [](int r, int c) { return c == 30 && r >= 50 && r < 70; };
    ScopedDetector used(240, 134);
    used->edge_count = draw(used, used->edge_map, far_and_row);
    used->HoughLine();
    used->edge_count = draw(used, used->edge_map, column);
    used->HoughLine();
    ScopedDetector fresh(240, 134);
    fresh->edge_count = draw(fresh, fresh->edge_map, column);
    fresh->HoughLine();
    const int cells = (fresh->hough_rho_count + 1) * 180;
    EXPECT_TRUE(std::equal(used->hough_acc, used->hough_acc + cells, fresh->hough_acc));
}
