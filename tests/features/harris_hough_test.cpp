#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "features/corner_line_verdict.h"
#include "common/region_grid.h"

TEST(CornerLineVerdict, BranchesAtTheirBoundaries) {
    // An 80 x 60 grid, the corner at (30, 40), 50 outline cells, runs of 4 and
    // 2 on the two lines (two crossing lines need 80 * 0.0002315 * 60 = 1.11)
    // and the second line `gap` angles from the first. The crossing search
    // reports (34, 42), sqrt 20 from the corner, where that distance is
    // expected, and (35, 42), sqrt 29 away, otherwise. `dist` is the distance
    // left behind: 100 when it is not measured, the -1 it starts from when the
    // verdict returns before reaching it.
    struct Case {
        int corner, hough_score, second_votes, gap;
        float scatter, dist;
        bool pass;
    };
    const float at = std::sqrt(20.0f), away = std::sqrt(29.0f), none = 100.0f;
    const Case cases[] = {
        // Off-line scatter (above 80 * 0.000463 * 60) with a run above
        // 60 * 80 * 0.0007 rejects at once a corner above 10000000 only. Real
        // outlines have no scatter; the rule is kept all the same.
        {10000000, 0, 0, 30, 2.3f, none, true},
        {10000001, 0, 0, 30, 2.3f, -1, false},
        // Without a second line the corner is halved. Halved corners from
        // 10000000 to 99999999 pass with a score up to 700000; 200000000
        // therefore never passes.
        {199999999, 700000, 0, 30, 0, none, true},
        {199999999, 700001, 0, 30, 0, none, false},
        {200000000, 0, 0, 30, 0, none, false},
        // 5 of 50 votes make a tenth in float, above the double 0.1: with a
        // corner above 1000000 the crossing is searched. A crossing further
        // than 4.5 from the corner halves it.
        {1000001, 0, 5, 30, 0, away, true},
        {1000001, 0, 4, 30, 0, none, true},
        {1000000, 0, 5, 30, 0, none, true},
        {150000000, 0, 40, 30, 0, away, true},
        // A crossing within 4.5 keeps the corner whole. Below 10000000 the
        // score may reach 7000000 less 0.63 times the corner.
        {8000000, 1960001, 40, 30, 0, at, false},
        {8000000, 1960000, 40, 30, 0, at, true},
        // Two long lines 61 to 119 angles apart crossing at a strong corner.
        {20000000, 0, 40, 60, 0, at, true},
        {20000000, 0, 40, 61, 0, at, false},
        {20000000, 0, 40, 119, 0, at, false},
        {20000000, 0, 40, 120, 0, at, true},
    };
    for (const Case& k : cases) {
        // Corner, score, scatter, the two runs, second votes, outline cells,
        // the two angles, the corner's position and the grid size.
        const molo::CornerLineFigures f{k.corner,   k.hough_score,
                                        k.scatter,  4,
                                        2,          k.second_votes,
                                        50,         10,
                                        10 + k.gap, 30,
                                        40,         80,
                                        60};
        molo::CornerLinePlacement out{-1, -1, -1.0f};
        auto search = [&](auto& p) { p.cross_row = k.dist == at ? 34 : 35, p.cross_col = 42; };
        EXPECT_EQ(molo::corner_line_verdict(f, out, search), k.pass) << k.corner << ' ' << k.gap;
        EXPECT_FLOAT_EQ(out.corner_line_dist, k.dist) << k.corner << ' ' << k.second_votes;
    }
}

TEST(HarrisHough, RoundRegionPassesRectangleFailsOnItsCorners) {
    ScopedDetector round(80, 60);
    draw(round, round->finger_mask,
         [](int r, int c) { return (r - 30) * (r - 30) + (c - 40) * (c - 40) < 300; });
    EXPECT_TRUE(round->HarrisHough());
    // Long sides at right angles meeting in sharp corners; the traced
    // outline is the border of the region.
    ScopedDetector box(80, 60);
    draw(box, box->finger_mask, [](int r, int c) { return in_rect(r, c, 10, 15, 39, 59); });
    EXPECT_FALSE(box->HarrisHough());
    EXPECT_FALSE(box->HarrisHough());  // a second call counts the outline afresh
    EXPECT_EQ(box->edge_count, 2 * 30 + 2 * 43);
    // Its corner map covers the box grown by 3 (ends exclusive), responds
    // negatively along the straight sides and most strongly near the first
    // corner.
    EXPECT_EQ(box->scan_row_end, 42);
    EXPECT_EQ(box->scan_col_end, 62);
    auto at = [&](int r, int c) { return box->corner_response[box.index(r, c)]; };
    for (int c = 23; c <= 51; ++c) EXPECT_TRUE(at(10, c) < 0 && at(39, c) < 0) << c;
    for (int r = 18; r <= 31; ++r) EXPECT_TRUE(at(r, 15) < 0 && at(r, 59) < 0) << r;
    EXPECT_TRUE(std::abs(box->corner_row - 10) <= 3 && std::abs(box->corner_col - 15) <= 3);
    // The cross product is kept doubled.
    const int i = box.index(12, 17);
    ASSERT_NE(box->grad_xy[i], 0);
    EXPECT_EQ(box->grad_xy[i] * box->grad_xy[i], 4 * box->grad_xx[i] * box->grad_yy[i]);
}
