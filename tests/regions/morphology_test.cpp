#include <gtest/gtest.h>

#include "common/region_grid.h"

TEST(Erode, DiagonalCrossWithClampedBorder) {
    ScopedDetector d(8, 8);
    // A 1 whose straight neighbours are 0 survives on its diagonals; of a
    // solid 3 x 3 block only the centre survives.
    paint(d, d->finger_mask, {"", ".1.1", "..1", ".1.1", "....111", "....111", "....111"});
    draw(d, d->edge_map, [](int, int) { return 1; });  // the scratch plane starts dirty
    d->Erode();
    EXPECT_EQ(picture(d, d->finger_mask),
              (Picture{"........", "........", "..1.....", "........", "........", ".....1..",
                       "........", "........"}));
    // A plane of 1 stays whole but for two cells: a 2 at (3, 3) is cleared
    // without eroding its neighbours, and a 0 in the corner takes (1, 1) with
    // it and also (0, 1) and (1, 0), whose clamped diagonals include it.
    draw(d, d->finger_mask, [](int r, int c) { return r == 3 && c == 3 ? 2 : r + c > 0; });
    d->Erode();
    Picture expected(8, "11111111");
    expected[0] = expected[1] = "..111111";
    expected[3] = "111.1111";
    EXPECT_EQ(picture(d, d->finger_mask), expected);
}

TEST(Dilate, FiveByFiveClampedAtTheBorder) {
    ScopedDetector d(10, 10);
    // Only exact 1 spreads; anything else is cleared.
    paint(d, d->finger_mask, {"1", "", "", "", "", "", "......1", "", "", "..2"});
    d->Dilate();
    EXPECT_EQ(picture(d, d->finger_mask),
              (Picture{"111.......", "111.......", "111.......", "..........", "....11111.",
                       "....11111.", "....11111.", "....11111.", "....11111.", ".........."}));
}
