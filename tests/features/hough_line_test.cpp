#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "features/outline_scene.h"

namespace {

// Outline cells of a 240 x 134 grid (hough_diag 274), box = the grid less its border.
template <typename F>
void outline(ScopedDetector& d, F on) {
    mark_outline(d, on);
    d->box_top = d->box_left = 1, d->box_bottom = 132, d->box_right = 238;
}

int votes(ScopedDetector& d, int rho, int angle) { return d->hough_acc[rho * 180 + angle]; }

}  // namespace

TEST(HoughLine, StraightSegmentGivesItsVotesAndRun) {
    // An L: 100 cells on row 60, 40 below its left end on column 20, and a
    // stray cell on row 59.
    ScopedDetector d(240, 134);
    ASSERT_EQ(d->hough_diag, 274);
    outline(d, [](int r, int c) {
        return (r == 60 && c >= 20 && c < 120) || (c == 20 && r > 60 && r <= 100) ||
               (r == 59 && c == 150);
    });
    EXPECT_TRUE(std::isfinite(d->HoughLine()));
    EXPECT_EQ(d->peak_votes, 100);
    EXPECT_EQ(d->peak_angle, 0);
    EXPECT_EQ(d->peak_rho, 60 + 274);
    // Row 59 lies half a step off the line; the distance is truncated before
    // the test, so it counts as on the line and starts the run.
    EXPECT_EQ(d->line_longest_run, 101);
    EXPECT_EQ(d->line_dist_sum, 0.0f);
    // Around angle 0 the neighbourhood wraps to the last angles.
    EXPECT_EQ(d->near_angles[0], 165);
    EXPECT_EQ(d->near_angles[14], 179);
    EXPECT_EQ(d->near_angles[30], 15);
    // The column has 41 votes with the corner cell, which the rest of row 60
    // cuts off from its run; the run carries from row to row.
    EXPECT_EQ(d->second_votes, 41);
    EXPECT_EQ(d->second_angle, 90);
    EXPECT_EQ(d->second_rho, 20 + 274);
    EXPECT_EQ(d->second_longest_run, 40);
}

TEST(HoughLine, FarCornerVoteLandsInTheSpareRow) {
    // At angle 61 the last cell of the grid has rho index 548, one past the
    // last row: the vote is never read and never moved into row 547.
    ScopedDetector d(240, 134);
    outline(d, [](int r, int c) { return r == 133 && c == 239; });
    d->box_top = d->box_bottom = 133, d->box_left = d->box_right = 239;
    d->HoughLine();
    EXPECT_EQ(votes(d, 548, 61), 1);
    for (int r = 0; r < 548; ++r) ASSERT_EQ(votes(d, r, 61), 0) << r;
    // The lowest rho index is at angle 179, whose neighbourhood wraps to 14.
    EXPECT_EQ(d->peak_angle, 179);
    EXPECT_EQ(d->near_angles[0], 164);
    EXPECT_EQ(d->near_angles[16], 0);
    EXPECT_EQ(d->near_angles[30], 14);
}

TEST(HoughLine, TiesKeepTheFirstCellOfEachScanOrder) {
    // 30 cells within 0.45 of the line at angle 60, rho index 374, and 30 of
    // the line at angle 120, rho index 284; optionally a long row on top.
    auto build = [](ScopedDetector& d, bool main_line) {
        std::vector<int> cells(d.cells(), 0);
        int n60 = 0, n120 = 0;
        for (int i = 0; i < d.cells(); ++i) {
            const int r = i / 240, c = i % 240;
            auto near = [&](int a, double value) {
                return std::fabs(d->cos_table[a] * r + d->sin_table[a] * c - value) < 0.45;
            };
            if (r >= 20 && r <= 70 && near(60, 100.0) && n60 < 30) cells[i] = ++n60;
            if (r >= 60 && r <= 120 && near(120, 10.0) && n120 < 30) cells[i] = ++n120;
            if (main_line && r == 125 && c >= 100 && c < 200) cells[i] = 1;
        }
        outline(d, [&](int r, int c) { return cells[r * 240 + c] != 0; });
        d->HoughLine();
        ASSERT_EQ(votes(d, 374, 60), 30);
        ASSERT_EQ(votes(d, 284, 120), 30);
    };
    ScopedDetector pair(240, 134);
    build(pair, false);  // rho outer: the smaller rho index wins
    EXPECT_EQ(pair->peak_angle, 120);
    EXPECT_EQ(pair->peak_rho, 284);
    ScopedDetector with_row(240, 134);
    build(with_row, true);  // angle outer: the smaller angle wins
    EXPECT_EQ(with_row->peak_angle, 0);
    EXPECT_EQ(with_row->second_angle, 60);
    EXPECT_EQ(with_row->second_rho, 374);
}
