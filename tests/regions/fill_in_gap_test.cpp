#include <gtest/gtest.h>

#include <string>

#include "regions/region_grid.h"

namespace {

void set_box(ScopedDetector& d, int top, int left, int bottom, int right) {
    d->box_top = top;
    d->box_left = left;
    d->box_bottom = bottom;
    d->box_right = right;
}

// A 12 x 12 mask of 1 with five one-cell holes in the box: in the middle and
// on its top, left, bottom and right sides away from the corners. Returns,
// in that order, 'x' for each hole FillInGap closed.
std::string holes_closed(int top, int left, int bottom, int right) {
    ScopedDetector d(12, 12);
    fill_box<unsigned char>(d, d->finger_mask, 0, 0, 11, 11, 1);
    const int holes[5][2] = {{(top + bottom) / 2, (left + right) / 2}, {top, left + 1},
                             {bottom - 1, left}, {bottom, right - 1}, {top + 1, right}};
    for (const auto& h : holes) d->finger_mask[d.index(h[0], h[1])] = 0;
    set_box(d, top, left, bottom, right);
    d->FillInGap();
    std::string closed;
    for (const auto& h : holes) closed += d->finger_mask[d.index(h[0], h[1])] == 1 ? 'x' : '.';
    return closed;
}

}  // namespace

TEST(FillInGap, TheSidesAHoleMustAvoidDependOnWhereTheBoxLies) {
    // Order: middle, top, left, bottom, right.
    EXPECT_EQ(holes_closed(0, 0, 8, 8), "xxx..");
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
    ScopedDetector d(12, 12);
    fill_box<unsigned int>(d, d->label_map, 0, 0, 11, 11, 7);  // earlier labels are dropped
    fill_box<unsigned char>(d, d->finger_mask, 0, 0, 11, 11, 1);
    fill_box<unsigned char>(d, d->finger_mask, 3, 3, 4, 4, 0);
    fill_box<unsigned char>(d, d->finger_mask, 5, 7, 5, 11, 0);  // seeded in the box, runs out of it
    set_box(d, 2, 2, 9, 9);
    d->FillInGap();
    Picture expected(12, "111111111111");
    expected[3] = expected[4] = "111221111111";
    expected[5] = "111111133333";
    EXPECT_EQ(picture(d, d->label_map), expected);
    EXPECT_EQ(d->region_stats[2].area, 4.0f);
    EXPECT_EQ(d->region_stats[3].area, 5.0f);
}

TEST(FillInGap, HoleLabelsRunPast255) {
    // 400 one-cell holes on a lattice; the box is the whole frame and every
    // hole is clear of its right and bottom sides.
    ScopedDetector d(40, 40);
    fill_box<unsigned char>(d, d->finger_mask, 0, 0, 39, 39, 1);
    for (int i = 0; i < d.cells(); i += 2) d->finger_mask[i] = (i / 40) % 2;
    set_box(d, 0, 0, 39, 39);
    d->FillInGap();
    EXPECT_EQ(d->label_map[d.index(38, 38)], 401u);
    EXPECT_EQ(d->region_stats[401].area, 1.0f);
    EXPECT_EQ(picture(d, d->finger_mask), Picture(40, std::string(40, '1')));
}
