#include <gtest/gtest.h>

#include "common/region_grid.h"

TEST(ConnectedSet, GrowsExactFourConnectedUnlabelledCellsInsideTheGrid) {
    // From (0, 0): the 8 one level off, the 7 touching only at a corner and
    // the 7 already labelled 9 stay out whatever the tolerance, and the seed's
    // earlier label 3 is taken over. The 7 at (0, 5) lies just before (1, 0)
    // in memory and the 5 at (3, 0) just after (2, 5); neither is a neighbour.
    ScopedDetector d(6, 4);
    paint(d, d->skin_mask, {"7787.7", "7.7...", "77...5", "5....."});
    paint(d, d->label_map, {"3", "", ".9"});
    int count = 0;
    auto grow = [&](int row, int col, int label) {
        d->ConnectedSet(Pixel{row, col}, 255.0, d->skin_mask, 6, 4, label, d->label_map, &count);
        return count;
    };
    EXPECT_EQ(grow(0, 0, 5), 4);
    EXPECT_EQ(grow(2, 5, 2), 1);
    EXPECT_EQ(grow(3, 5, 4), 12);  // the zeros, from the bottom-right corner
    EXPECT_EQ(picture(d, d->label_map), (Picture{"55..4.", "5..444", "594442", ".44444"}));
    for (int c = 0; c < 6; ++c) EXPECT_EQ(d->label_map[d.cells() + c], 0u);  // row below the plane
}
