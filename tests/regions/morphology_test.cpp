#include <gtest/gtest.h>

#include "regions/region_grid.h"

TEST(Erode, DiagonalCrossWithClampedBorder) {
    ScopedDetector d(8, 8);
    // A 1 whose straight neighbours are 0 survives on its diagonals; of a
    // solid 3 x 3 block only the centre survives.
    paint(d, d->finger_mask, {"", ".1.1", "..1", ".1.1", "....111", "....111", "....111"});
    d->Erode();
    EXPECT_EQ(picture(d, d->finger_mask),
              (Picture{"........", "........", "..1.....", "........", "........", ".....1..",
                       "........", "........"}));
    // An all-ones plane stays whole; a byte other than 1 is cleared but does
    // not erode its neighbours. With the corner cleared, (1, 0) goes too: its
    // clamped up-left diagonal is that corner.
    fill_box<unsigned char>(d, d->finger_mask, 0, 0, 7, 7, 1);
    d->finger_mask[d.index(3, 3)] = 2;
    d->Erode();
    Picture expected(8, "11111111");
    expected[3] = "111.1111";
    EXPECT_EQ(picture(d, d->finger_mask), expected);
    d->finger_mask[d.index(3, 3)] = 1;
    d->finger_mask[0] = 0;
    d->Erode();
    EXPECT_EQ(picture(d, d->finger_mask)[1], "..111111");
    EXPECT_EQ(picture(d, d->finger_mask)[2], "11111111");
}

TEST(Dilate, FiveByFiveClampedAtTheBorder) {
    ScopedDetector d(10, 10);
    d->finger_mask[d.index(0, 0)] = 1;
    d->finger_mask[d.index(6, 6)] = 1;
    d->finger_mask[d.index(9, 2)] = 2;  // only exact 1 spreads; anything else is cleared
    d->Dilate();
    EXPECT_EQ(picture(d, d->finger_mask),
              (Picture{"111.......", "111.......", "111.......", "..........", "....11111.",
                       "....11111.", "....11111.", "....11111.", "....11111.", ".........."}));
}
