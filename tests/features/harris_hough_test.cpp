#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "features/corner_line_verdict.h"
#include "features/outline_scene.h"

namespace {

// Verdict on an 80 x 60 grid (two crossing lines need runs above
// 80 * 0.0002315 * 60 = 1.11) with a crossing search that puts the crossing
// at `cross` and counts its calls. The corner lies at (30, 40).
struct Verdict {
    molo::CornerLineFigures f{};
    int cross_row = 30, cross_col = 40, searches = 0;
    molo::CornerLinePlacement out{-1, -1, -1.0f};

    Verdict(int corner, int hough_score, int second_votes = 0, int gap = 30) {
        f.corner = corner, f.hough_score = hough_score, f.second_votes = second_votes;
        f.edge_count = 100, f.peak_angle = 10, f.second_angle = 10 + gap;
        f.corner_row = 30, f.corner_col = 40, f.grid_width = 80, f.grid_height = 60;
    }
    Verdict& crossing(int row, int col) {
        cross_row = row;
        cross_col = col;
        return *this;
    }
    bool operator()() {
        return molo::corner_line_verdict(f, out, [this](molo::CornerLinePlacement& p) {
            ++searches;
            p.cross_row = cross_row;
            p.cross_col = cross_col;
        });
    }
};

}  // namespace

TEST(CornerLineVerdict, CornerBranchesAtTheirBoundaries) {
    // No corner is halved to 0: a line budget of 7000000.
    EXPECT_TRUE(Verdict(0, 7000000)());
    EXPECT_FALSE(Verdict(0, 7000001)());
    // Off-line scatter (above 80 * 0.000463 * 60) with a run above
    // 60 * 80 * 0.0007 rejects only a corner above 10000000. Real outlines
    // have no scatter; the rule is kept all the same.
    for (int corner : {10000000, 10000001}) {
        Verdict v(corner, 0);
        v.f.line_dist_sum = 2.3f, v.f.line_longest_run = 4;
        v.out = {7, 8, 9.0f};
        EXPECT_EQ(v(), corner == 10000000);
        EXPECT_EQ(v.out.cross_row, corner == 10000000 ? 0 : 7);
    }
    // 25000000 is halved into the band of strong corners.
    EXPECT_TRUE(Verdict(25000000, 700000)());
    EXPECT_FALSE(Verdict(25000000, 700001)());
    // 200000000 fails on every path; one less is halved to 99999999.
    EXPECT_FALSE(Verdict(200000000, 0)());
    EXPECT_FALSE(Verdict(200000000, 0, 40)());
    EXPECT_FALSE(Verdict(200000000, 0, 40, 90)());
    EXPECT_FALSE(Verdict(200000000, 0, 40).crossing(0, 0)());
    EXPECT_TRUE(Verdict(199999999, 700000)());
}

TEST(CornerLineVerdict, SecondLineAnalysisAndItsCrossing) {
    // A tenth in float (5 of 50) is above the double 0.1; the corner must be
    // above 1000000.
    auto searched = [](int corner, int votes) {
        Verdict v(corner, 0, votes);
        v.f.edge_count = 50;
        v.crossing(33, 44)();
        EXPECT_EQ(v.out.corner_line_dist, v.searches ? 5.0f : 100.0f);
        return v.searches == 1;
    };
    EXPECT_TRUE(searched(1000001, 5));
    EXPECT_FALSE(searched(1000001, 4));
    EXPECT_FALSE(searched(1000000, 5));
    // A crossing within 4.5 of the corner (sqrt 20) keeps the corner whole;
    // one further away (sqrt 29) halves it and keeps its measured distance.
    EXPECT_FALSE(Verdict(150000000, 0, 40).crossing(34, 42)());
    Verdict away(150000000, 0, 40);
    EXPECT_TRUE(away.crossing(35, 42)());
    EXPECT_NEAR(away.out.corner_line_dist, 5.385165f, 1e-6f);
    EXPECT_FALSE(Verdict(8000000, 1960001, 40).crossing(34, 42)());
    EXPECT_TRUE(Verdict(8000000, 1960000, 40).crossing(34, 42)());
    // Two lines 61 to 119 angles apart, both runs above 1.11, crossing near
    // a strong corner: rejected.
    for (int gap : {60, 61, 119, 120}) {
        Verdict v(20000000, 0, 40, gap);
        v.f.line_longest_run = v.f.second_longest_run = 2;
        EXPECT_EQ(v.crossing(34, 42)(), gap == 60 || gap == 120) << gap;
    }
}

TEST(HarrisHough, CollapsedBoxIsRejectedAfterGapFillingBeforeTracing) {
    // One row; rows 0 and 1 (row 0 is never traced); one column; columns 0 and 1.
    const int boxes[][4] = {{20, 10, 20, 40}, {0, 10, 1, 40}, {10, 30, 40, 30}, {10, 0, 40, 1}};
    for (const auto& b : boxes) {
        ScopedDetector d(80, 60);
        paint_region(d, [&](int r, int c) { return in_rect(r, c, b[0], b[1], b[2], b[3]); });
        std::memset(d->edge_map, 7, static_cast<size_t>(d.cells()));
        d->label_map[d.index(b[0], b[1])] = 9;
        EXPECT_FALSE(d->HarrisHough());
        EXPECT_EQ(d->edge_map[d.index(b[0], b[1])], 7);
        EXPECT_EQ(d->label_map[d.index(b[0], b[1])], 1u);  // relabelled by gap filling
    }
    // A region on row 0 alone collapses past a single row (first row 1, last
    // row 0): it is not rejected here, and its empty outline passes.
    ScopedDetector top_row(80, 60);
    paint_region(top_row, [](int r, int c) { return r == 0 && c >= 10 && c <= 40; });
    EXPECT_TRUE(top_row->HarrisHough());
    EXPECT_EQ(top_row->edge_count, 0);
}

TEST(HarrisHough, RoundRegionPassesRectangleFailsEmptyOutlinePasses) {
    ScopedDetector round(80, 60);
    paint_region(round,
                 [](int r, int c) { return (r - 30) * (r - 30) + (c - 40) * (c - 40) < 300; });
    EXPECT_TRUE(round->HarrisHough());

    // Long sides at right angles meeting in sharp corners; the outline is
    // the border of the region.
    ScopedDetector box(80, 60);
    paint_region(box, [](int r, int c) { return in_rect(r, c, 10, 15, 39, 59); });
    EXPECT_FALSE(box->HarrisHough());
    EXPECT_EQ(box->edge_count, 2 * 30 + 2 * 43);
    EXPECT_EQ(box->second_angle - box->peak_angle, 90);
    EXPECT_LT(box->corner_line_dist, 4.5f);

    // No region cell in the box: the score is NaN, counted as 0.
    ScopedDetector empty(80, 60);
    paint_region(empty, [](int, int) { return 0; });
    empty->box_top = empty->box_left = 20, empty->box_bottom = empty->box_right = 30;
    empty->cross_row = 5;
    EXPECT_TRUE(empty->HarrisHough());
    EXPECT_EQ(empty->edge_count, 0);
    EXPECT_TRUE(std::isnan(empty->HoughLine()));
    EXPECT_EQ(empty->cross_row, 0);
    EXPECT_EQ(empty->corner_line_dist, 100.0f);
}
