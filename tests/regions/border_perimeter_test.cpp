#include <gtest/gtest.h>

#include <utility>

#include "common/region_grid.h"

TEST(BorderLength, RowsCompeteAloneAndASideWinsWithItsWholeColumn) {
    // A 6 x 10 grid, whose side column splits into rows 0 .. 5 and rows 9 up to 6.
    auto border = [](std::initializer_list<const char*> rows, int orientation) {
        ScopedDetector d(6, 10);
        paint(d, d->label_map, rows);
        d->orientation = orientation;
        int position = -1;
        const int length = d->GetBorderLength(2, &position);
        return std::pair(length, position);
    };
    // Top and bottom tie: the top keeps it. No border cell: position 6.
    EXPECT_EQ(border({"..22..", "", "", "", "", "", "", "", "", "...22."}, 0), std::pair(2, 2));
    EXPECT_EQ(border({"......", "..22.."}, 0), std::pair(0, 6));
    // Column 0: its upper half (1) loses to the top row (2), its lower half (3)
    // wins for the whole column, positioned from the bottom row. Column 5:
    // the upper half (3) wins for the whole column. Each orientation sees
    // its own column only.
    const std::initializer_list<const char*> scene{".22...", "......", "2.....", ".....2",
                                                   ".....2", ".....2", "2.....", "2.....",
                                                   "2....2", "......"};
    EXPECT_EQ(border(scene, 0), std::pair(4, 1));
    EXPECT_EQ(border(scene, 1), std::pair(4, 3));
}

TEST(Perimeter, CountsSidesFacingOtherCellsAndReadsPastThreeCorners) {
    // A plane of 8 x 6 with the spare row below it. Corner 2, edges 3, the
    // interior pair 6 -- but the top-right cell reads the first cell of row 1
    // as its right neighbour, the bottom-left cell reads the spare row below
    // it and the bottom-right cell the spare cell after it, so each counts 3
    // while those are empty.
    ScopedDetector d(8, 6);
    std::vector<unsigned int> plane(8 * 7, 0);
    paint(d, plane.data(), {"2...2..2", "", "...22..2", "2.......", "", "2...2..2"});
    EXPECT_EQ(d->compute_perimeter(plane.data(), 8, 6, 2), 2u + 3 * 7 + 6);
    // Labelling those cells takes one side off each of the three; (1, 0)
    // itself adds 2 and takes one side from (0, 0).
    paint(d, plane.data(), {"", "2", "", "", "", "", "22222222"});
    EXPECT_EQ(d->compute_perimeter(plane.data(), 8, 6, 2), 2u + 3 * 7 + 6 - 3 + 2 - 1);
}
