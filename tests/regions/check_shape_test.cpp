#include <gtest/gtest.h>

#include "common/region_grid.h"

namespace {

enum Edge { kTop, kLeft, kBottom, kRight };

// Candidate label 2 entering from `edge`: line first + i (a column for the
// top and bottom edges, a row for the sides) is labelled from the edge inward
// to depth[i]; -1 leaves the line empty. The box is the label's extent.
int shape_of(ScopedDetector& d, Edge edge, int first, const std::vector<int>& depth) {
    const int h = d->down_height, w = d->down_width;
    draw(d, d->label_map, [&](int r, int c) {
        const int s = edge == kTop      ? r
                      : edge == kLeft   ? c
                      : edge == kBottom ? h - 1 - r
                                        : w - 1 - c;
        const int i = (edge == kTop || edge == kBottom ? c : r) - first;
        return i >= 0 && i < static_cast<int>(depth.size()) && s <= depth[i] ? 2 : 0;
    });
    d->best_label = 2;
    return d->CheckShape();
}

}  // namespace

TEST(CheckShape, EachEdgeProfilesDepthFromItselfAndRejectsTwoJumps) {
    // The empty seventh line repeats the depth before it, so the profile is
    // one step up, not a dip to 0 between two jumps.
    const std::vector<float> profile{2, 2, 2, 2, 2, 6, 6, 6, 6, 6};
    for (Edge edge : {kTop, kLeft, kBottom, kRight}) {
        ScopedDetector d(16, 16);
        EXPECT_EQ(shape_of(d, edge, 3, {2, 2, 2, 2, 2, 6, -1, 6, 6, 6}), 1) << edge;
        EXPECT_EQ(std::vector<float>(d->shape_profile + 3, d->shape_profile + 13), profile);
        EXPECT_EQ(shape_of(d, edge, 3, {2, 2, 2, 6, 6, 6, 6, 2, 2, 2}), 0) << edge;
    }
}

TEST(CheckShape, ProfileRules) {
    ScopedDetector d(16, 12);
    // A flat profile has no range; it passes.
    EXPECT_EQ(shape_of(d, kTop, 3, {6, 6, 6, 6, 6, 6, 6, 6}), 1);
    // The two outermost entries at each end are never tested.
    EXPECT_EQ(shape_of(d, kTop, 3, {6, 6, 2, 2, 2, 2, 2, 2, 6, 6}), 1);
    // Boxes five rows high pass unchecked; six rows are checked.
    EXPECT_EQ(shape_of(d, kTop, 3, {1, 1, 1, 4, 4, 1, 1, 1}), 1);
    EXPECT_EQ(shape_of(d, kTop, 3, {1, 1, 1, 5, 5, 1, 1, 1}), 0);
    // The minimum starts at the column count (10) even above every depth, so
    // the low entries normalise to 0.2 and no step truncates to a jump.
    ScopedDetector tall(10, 24);
    EXPECT_EQ(shape_of(tall, kTop, 1, {12, 12, 12, 20, 20, 12, 12, 12}), 1);
}
