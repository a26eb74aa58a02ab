#include <gtest/gtest.h>

#include "common/region_grid.h"

TEST(FillInGap, TheSidesAHoleMustAvoidDependOnWhereTheBoxLies) {
    // A 12 x 12 mask of 1 with five one-cell holes in the box: in the middle
    // and on its top, left, bottom and right sides away from the corners.
    // Returns, in that order, 'x' for each hole FillInGap closed.
    auto holes_closed = [](int top, int left, int bottom, int right) {
        ScopedDetector d(12, 12);
        draw(d, d->finger_mask, [](int, int) { return 1; });
        const int holes[5][2] = {{(top + bottom) / 2, (left + right) / 2},
                                 {top, left + 1},
                                 {bottom - 1, left},
                                 {bottom, right - 1},
                                 {top + 1, right}};
        for (const auto& h : holes) d->finger_mask[d.index(h[0], h[1])] = 0;
        d->box_top = top, d->box_left = left, d->box_bottom = bottom, d->box_right = right;
        d->FillInGap();
        std::string closed;
        for (const auto& h : holes) closed += d->finger_mask[d.index(h[0], h[1])] == 1 ? 'x' : '.';
        return closed;
    };
    // Order: middle, top, left, bottom, right.
    EXPECT_EQ(holes_closed(0, 0, 11, 11), "xxx..");  // right and bottom frame edges still closed
    EXPECT_EQ(holes_closed(3, 0, 11, 8), "x.xx.");
    EXPECT_EQ(holes_closed(3, 0, 9, 8), "x.x..");
    EXPECT_EQ(holes_closed(0, 3, 8, 11), "xx...");  // likewise the right frame edge
    EXPECT_EQ(holes_closed(3, 3, 11, 11), "x..xx");
    EXPECT_EQ(holes_closed(3, 3, 9, 11), "x...x");
    EXPECT_EQ(holes_closed(3, 3, 11, 9), "x..x.");
    EXPECT_EQ(holes_closed(3, 3, 9, 9), ".....");  // no frame edge: every hole kept
}

TEST(FillInGap, RelabelsThePlaneAndMeasuresWholeHoles) {
    // A box on the top and left frame edges, right side on column 31. Left of
    // it, one-cell holes on a lattice; on row 1, a strip of nine from column
    // 31 to the frame's edge, seeded on the box's side and running out of it.
    // Earlier labels (7) are dropped.
    ScopedDetector d(40, 40);
    draw(d, d->label_map, [](int, int) { return 7; });
    draw(d, d->finger_mask, [](int r, int c) { return c <= 30 ? r % 2 || c % 2 : r != 1; });
    d->box_right = 31;
    d->FillInGap();
    // Row 0 holds holes 2 .. 17, the strip (row 1) is hole 18, and the labels
    // run on past 255 to the last hole.
    EXPECT_EQ(d->region_stats[18].area, 9.0f);
    EXPECT_EQ(d->label_map[d.index(38, 30)], 322u);
    EXPECT_EQ(d->region_stats[322].area, 1.0f);
    // Every lattice hole is filled; the strip touches the box's right side.
    Picture filled(40, std::string(40, '1'));
    filled[1] = std::string(31, '1') + std::string(9, '.');
    EXPECT_EQ(picture(d, d->finger_mask), filled);
}
