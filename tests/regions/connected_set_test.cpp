#include <gtest/gtest.h>

#include "regions/region_grid.h"

TEST(ConnectedSet, GrowsExactFourConnectedUnlabelledCells) {
    // A neighbour one level off, a cell touching only at a corner and a cell
    // already labelled 9 all stay out, whatever tolerance is passed. The
    // seed's own earlier label 3 is taken over.
    for (double tolerance : {0.0, 1.0, 255.0}) {
        ScopedDetector d(6, 4);
        paint(d, d->skin_mask, {"778777", "7.7...", "77....", "......"});
        paint(d, d->label_map, {"3.....", "......", ".9....", "......"});
        int count = 0;
        d->ConnectedSet(Pixel{0, 0}, tolerance, d->skin_mask, 6, 4, 5, d->label_map, &count);
        EXPECT_EQ(count, 4);
        EXPECT_EQ(picture(d, d->label_map), (Picture{"55....", "5.....", "59....", "......"}));
    }
}

TEST(ConnectedSet, CornerSeedsStayInsideTheGrid) {
    ScopedDetector d(6, 4);
    // An isolated top-right seed: the first cell of the next row, although
    // equal and next to it in memory, is not its neighbour.
    paint(d, d->skin_mask, {"123457", "745612", "123456", "654321"});
    int count = 0;
    d->ConnectedSet(Pixel{0, 5}, 1.0, d->skin_mask, 6, 4, 2, d->label_map, &count);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(d->label_map[d.index(1, 0)], 0u);
    // Seeds in the bottom-right and top-left corners of a plane split by a wall.
    paint(d, d->skin_mask, {"..1...", "..1...", "..1...", "..1..."});
    paint(d, d->label_map, {"......"});
    d->ConnectedSet(Pixel{3, 5}, 1.0, d->skin_mask, 6, 4, 2, d->label_map, &count);
    EXPECT_EQ(count, 12);
    d->ConnectedSet(Pixel{0, 0}, 1.0, d->skin_mask, 6, 4, 3, d->label_map, &count);
    EXPECT_EQ(count, 8);
    EXPECT_EQ(picture(d, d->label_map), (Picture{"33.222", "33.222", "33.222", "33.222"}));
    for (int c = 0; c < 6; ++c) EXPECT_EQ(d->label_map[d.cells() + c], 0u);  // row below the plane
}
