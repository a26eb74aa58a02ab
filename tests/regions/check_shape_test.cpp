#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "regions/region_grid.h"

namespace {

enum class Edge { kTop, kLeft, kBottom, kRight };

// Candidate label 2 entering from `edge`: line first + i (a column for the
// top and bottom edges, a row for the sides) is labelled from the edge inward
// to depth[i]; -1 leaves the line empty. Returns CheckShape's verdict.
int shape_of(ScopedDetector& d, Edge edge, int first, const std::vector<int>& depth) {
    const int h = d->down_height;
    const int w = d->down_width;
    const int last = first + static_cast<int>(depth.size()) - 1;
    const int deepest = *std::max_element(depth.begin(), depth.end());
    for (int i = 0; i < static_cast<int>(depth.size()); ++i) {
        for (int s = 0; s <= depth[i]; ++s) {
            const int r = edge == Edge::kTop ? s : edge == Edge::kBottom ? h - 1 - s : first + i;
            const int c = edge == Edge::kLeft ? s : edge == Edge::kRight ? w - 1 - s : first + i;
            d->label_map[d.index(r, c)] = 2;
        }
    }
    const bool rows = edge == Edge::kTop || edge == Edge::kBottom;
    d->best_label = 2;
    d->box_top = edge == Edge::kTop ? 0 : edge == Edge::kBottom ? h - 1 - deepest : first;
    d->box_bottom = edge == Edge::kTop ? deepest : rows ? h - 1 : last;
    d->box_left = edge == Edge::kLeft ? 0 : edge == Edge::kRight ? w - 1 - deepest : first;
    d->box_right = edge == Edge::kLeft ? deepest : rows ? last : w - 1;
    return d->CheckShape();
}

int top_shape(const std::vector<int>& depth) {
    ScopedDetector d(16, 12);
    return shape_of(d, Edge::kTop, 3, depth);
}

}  // namespace

TEST(CheckShape, EachEdgeProfilesDepthFromItselfAndRejectsTwoJumps) {
    const std::vector<int> plateau{2, 2, 2, 2, 2, 6, 6, 6, 6, 6};
    for (Edge edge : {Edge::kTop, Edge::kLeft, Edge::kBottom, Edge::kRight}) {
        ScopedDetector d(16, 16);
        EXPECT_EQ(shape_of(d, edge, 3, plateau), 1);
        for (int i = 0; i < 10; ++i) EXPECT_EQ(d->shape_profile[3 + i], plateau[i]);
        ScopedDetector bump(16, 16);
        EXPECT_EQ(shape_of(bump, edge, 3, {2, 2, 2, 6, 6, 6, 6, 2, 2, 2}), 0);
    }
}

TEST(CheckShape, ProfileRules) {
    // A flat profile has no range; it passes.
    EXPECT_EQ(top_shape({6, 6, 6, 6, 6, 6, 6, 6}), 1);
    // The two outermost entries at each end are never tested.
    EXPECT_EQ(top_shape({6, 6, 2, 2, 2, 2, 2, 2, 6, 6}), 1);
    // Empty columns repeat the depth before them, giving low-high-high-high-low.
    ScopedDetector gap(16, 12);
    EXPECT_EQ(shape_of(gap, Edge::kTop, 3, {2, 2, 2, 6, -1, -1, 2, 2, 2, 2}), 0);
    EXPECT_EQ(gap->shape_profile[7], 6.0f);
    // Boxes five rows high pass unchecked; six rows are checked.
    EXPECT_EQ(top_shape({1, 1, 1, 4, 4, 1, 1, 1}), 1);
    EXPECT_EQ(top_shape({1, 1, 1, 5, 5, 1, 1, 1}), 0);
    // The minimum starts at the column count (10) even above every depth, so
    // the low entries normalise to 0.2 and no step truncates to a jump.
    ScopedDetector tall(10, 24);
    EXPECT_EQ(shape_of(tall, Edge::kTop, 1, {12, 12, 12, 20, 20, 12, 12, 12}), 1);
}

TEST(CheckShape, TopIsExaminedBeforeLeft) {
    // Both profiles jump twice; the one left behind is the top's (by column).
    ScopedDetector d(16, 16);
    fill_box(d, d->label_map, 0, 0, 2, 11, 2u);
    fill_box(d, d->label_map, 0, 4, 11, 7, 2u);
    fill_box(d, d->label_map, 5, 0, 6, 11, 2u);
    d->best_label = 2;
    d->box_top = d->box_left = 0;
    d->box_bottom = d->box_right = 11;
    EXPECT_EQ(d->CheckShape(), 0);
    EXPECT_EQ(d->shape_profile[0], 6.0f);
    EXPECT_EQ(d->shape_profile[4], 11.0f);
    // A box touching no frame edge passes whatever it holds.
    d->box_top = d->box_left = 1;
    EXPECT_EQ(d->CheckShape(), 1);
}
