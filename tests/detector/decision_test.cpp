// The tests applied to a chosen candidate, on hand-made working images.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "common/detector_fixture.h"
#include "common/log_capture.h"
#include "detector/decision.h"

namespace {

constexpr unsigned int kLabel = 2;

// An 80 x 60 grid of luma 120 and chroma (100, 160), no label but 1, with
// logging on and entry 0 (kind 1) active.
struct Candidate {
    Candidate() : d(80, 60) {
        const int n = d.cells();
        for (int i = 0; i < n; ++i) {
            d->down_y[i] = 120;
            d->label_map[i] = 1;
            d->skin_mask[i] = 0;
        }
        for (int i = 0; i < n / 2; i += 2) {
            d->down_vu[i] = 100;
            d->down_vu[i + 1] = 160;
        }
        d->log_enabled = 1;
        d->db_index = 0;
        d->orientation = 0;
        d->best_label = kLabel;
        d->skin_ratio = 0.01f;
    }

    // Labels rows [r0, r1) x columns [c0, c1) as the candidate with the
    // given luma and chroma; returns the area painted so far.
    int paint(int r0, int r1, int c0, int c1, uint8_t luma = 120, uint8_t first = 147,
              uint8_t second = 117) {
        for (int r = r0; r < r1; ++r) {
            for (int c = c0; c < c1; ++c) {
                d->label_map[d.index(r, c)] = kLabel;
                d->skin_mask[d.index(r, c)] = 0xFF;
                d->down_y[d.index(r, c)] = luma;
                d->down_vu[(r / 2) * 80 + (c & ~1)] = first;
                d->down_vu[(r / 2) * 80 + (c & ~1) + 1] = second;
            }
        }
        area_ += (r1 - r0) * (c1 - c0);
        return area_;
    }

    // Runs the decision chain and returns its single message ("" for none).
    std::string decide(int border_length) {
        d->region_stats[kLabel].border_length = border_length;
        LogCapture log;
        const molo::RegionBox grid{0, 0, d->down_height - 1, d->down_width - 1};
        result_ = molo::decide(*d, area_, grid, &row_, &col_);
        const auto texts = log.texts();
        return texts.empty() ? "" : texts.front();
    }

    ScopedDetector d;
    int area_ = 0;
    int result_ = -1, row_ = -1, col_ = -1;
};

const std::string kShape = "0:Not finger shape.\n";

}  // namespace

// The shape, size and darkness steps at their limits: each case is an
// orientation, the candidate's rectangles, its luma and that of the surround,
// the border length, and whether the step's message is logged.
TEST(Decision, ShapeSizeAndDarknessLimits) {
    const std::string kMiddle = "0:position at middle but size is too small.\n";
    const std::string kDark = "0:Finger too dark.\n";
    struct Case {
        int orientation;
        std::vector<std::array<int, 4>> rects;
        uint8_t luma, surround;
        int border;
        const std::string& message;
        bool logged;
    };
    const Case cases[] = {
        // Tall on the left edge: border * 1.2 must reach the 20 rows.
        {0, {{20, 40, 0, 10}}, 120, 120, 16, kShape, true},
        {0, {{20, 40, 0, 10}}, 120, 120, 17, kShape, false},
        // Wider than tall on the left edge fails the tall test; its mirror
        // image on the right edge is not confined to the last column, so it
        // takes the plain test and passes.
        {0, {{20, 30, 0, 30}}, 120, 120, 10, kShape, true},
        {1, {{20, 30, 50, 80}}, 120, 120, 10, kShape, false},
        // Wide on the bottom edge: border * 1.2 must reach the 40 columns.
        {0, {{50, 60, 20, 60}}, 120, 120, 32, kShape, true},
        {0, {{50, 60, 20, 60}}, 120, 120, 34, kShape, false},
        // Unanchored, 12 cells of the 14.4 needed; anchored at the top (top
        // <= 10) or bottom corner of the entry side (top > 10, bottom >= h -
        // 10) it passes.
        {0, {{20, 23, 3, 7}}, 120, 120, 0, kMiddle, true},
        {0, {{10, 13, 3, 7}}, 120, 120, 0, kMiddle, false},
        {0, {{20, 21, 3, 7}, {50, 51, 3, 7}, {21, 50, 3, 4}}, 120, 120, 0, kMiddle, false},
        // Dark: a mean luma of 20 at least 60 below the surround; a mean of
        // 30 skips the test.
        {0, {{0, 20, 0, 12}}, 20, 70, 20, kDark, true},
        {0, {{0, 20, 0, 12}}, 20, 81, 20, kDark, false},
        {0, {{0, 20, 0, 12}}, 30, 70, 20, kDark, false},
    };
    for (const Case& k : cases) {
        Candidate t;
        t.d->orientation = k.orientation;
        for (int i = 0; i < t.d.cells(); ++i) t.d->down_y[i] = k.surround;
        for (const auto& r : k.rects) t.paint(r[0], r[1], r[2], r[3], k.luma);
        const auto& r0 = k.rects[0];
        EXPECT_EQ(t.decide(k.border) == k.message, k.logged)
            << r0[0] << "," << r0[2] << " border " << k.border << " " << k.message;
    }
    // A rejection leaves the box measured and the detector searching.
    Candidate t;
    t.paint(20, 40, 0, 10);
    t.decide(16);
    EXPECT_EQ((std::vector<int>{t.d->box_top, t.d->box_bottom, t.d->box_left, t.d->box_right,
                                t.d->have_detect}),
              (std::vector<int>{20, 39, 0, 9, 0}));
}

TEST(Decision, CommonColourElsewhereRejects) {
    const std::string similar =
        "0:Similar finger cololr exist much. so not sure it is really finger.\n";
    // 300 skin pixels (over 5 % of the grid) of the candidate's chroma
    // elsewhere, with the given luma.
    auto scene = [](Candidate& t, uint8_t luma, float skin_ratio) {
        t.paint(0, 20, 0, 12);
        for (int r = 30; r < 60; ++r) {
            for (int c = 40; c < 50; ++c) {
                t.d->skin_mask[t.d.index(r, c)] = 0xFF;
                t.d->down_y[t.d.index(r, c)] = luma;
                t.d->down_vu[(r / 2) * 80 + (c & ~1)] = 147;
                t.d->down_vu[(r / 2) * 80 + (c & ~1) + 1] = 117;
            }
        }
        t.d->skin_ratio = skin_ratio;
    };
    // Other luma: only the chroma check among skin pixels sees them, and it
    // runs only when skin covers over 5 % of the grid.
    Candidate skin_check;
    scene(skin_check, 200, 0.06f);
    std::fill(skin_check.d->finger_mask, skin_check.d->finger_mask + skin_check.d.cells(), 1);
    EXPECT_EQ(skin_check.decide(20), similar);
    // The rejection leaves the finger mask empty.
    EXPECT_EQ(
        std::count(skin_check.d->finger_mask, skin_check.d->finger_mask + skin_check.d.cells(), 0),
        skin_check.d.cells());
    Candidate no_skin_check;
    scene(no_skin_check, 200, 0.05f);
    EXPECT_NE(no_skin_check.decide(20), similar);
    // Same luma and chroma: counted whatever the skin share.
    Candidate all_pixels;
    scene(all_pixels, 120, 0.0f);
    EXPECT_EQ(all_pixels.decide(20), similar);
}

TEST(Decision, OneRowRegionFailsTheCornerAndLineCheck) {
    Candidate t;
    t.paint(5, 6, 3, 23);  // plain placement, anchored at the top-left corner
    EXPECT_EQ(t.decide(1), "0:HarrisHough detection.\n");
    EXPECT_EQ(t.result_, 0);
    // The region was copied into the finger mask before the check.
    EXPECT_EQ(t.d->finger_mask[t.d.index(5, 3)], 1);
    EXPECT_EQ(t.d->finger_mask[t.d.index(6, 3)], 0);
}

// A confirmed finger's position is the sum of the mask's rows and columns
// divided by the area the candidate was measured with, then scaled by 8, not
// divided by the mask's own cell count: here that area is 40 cells more
// than the half disc painted on the left edge.
TEST(Decision, PositionDividesTheMasksSumsByTheCandidatesArea) {
    Candidate t;
    int sum_row = 0, sum_col = 0;
    for (int r = 16; r <= 44; ++r) {
        int width = 0;
        while ((r - 30) * (r - 30) + width * width < 225) ++width;
        t.paint(r, r + 1, 0, width);
        sum_row += r * width;
        sum_col += width * (width - 1) / 2;
    }
    t.area_ += 40;
    t.d->have_detect = 1;
    EXPECT_EQ(t.decide(29), "0: have_detect:2\n");
    ASSERT_EQ(t.result_, 1);
    EXPECT_EQ(t.row_, sum_row / t.area_ * 8);
    EXPECT_EQ(t.col_, sum_col / t.area_ * 8);
}
