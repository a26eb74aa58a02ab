#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "regions/region_grid.h"

namespace {

// Border length and position of label 2 on a 6 x 10 grid, whose side column
// splits into rows 0 .. 5 and rows 9 up to 6.
std::pair<int, int> border_of(std::initializer_list<const char*> rows, int orientation) {
    ScopedDetector d(6, 10);
    paint(d, d->label_map, rows);
    d->orientation = orientation;
    int position = -1;
    const int length = d->GetBorderLength(2, &position);
    return {length, position};
}

}  // namespace

TEST(BorderLength, RowsCompeteAloneAndASideWinsWithItsWholeColumn) {
    using P = std::pair<int, int>;
    // Top and bottom tie: the top keeps it. No border cell: position 6.
    EXPECT_EQ(border_of({"..22..", "", "", "", "", "", "", "", "", "...22."}, 0), P(2, 2));
    EXPECT_EQ(border_of({"......", "..22.."}, 0), P(0, 6));
    // Column 0: its upper half (1) loses to the top row (2), its lower half (3)
    // wins for the whole column, positioned from the bottom row. Column 5:
    // the upper half (3) wins for the whole column. Each orientation sees
    // its own column only.
    const std::initializer_list<const char*> scene{".22...", "......", "2.....", ".....2",
                                                   ".....2", ".....2", "2.....", "2.....",
                                                   "2....2", "......"};
    EXPECT_EQ(border_of(scene, 0), P(4, 1));
    EXPECT_EQ(border_of(scene, 1), P(4, 3));
}

TEST(Perimeter, CountsSidesFacingOtherCellsButNotTheFrame) {
    ScopedDetector d(8, 6);
    // Corner 2, top edge 3, interior pair 6, right edge 3, left edge 3, bottom edge 3.
    paint(d, d->label_map, {"2...2...", "........", "...22..2", "........", "2.......", "....2..."});
    EXPECT_EQ(d->compute_perimeter(d->label_map, 8, 6, 2), 20u);
    EXPECT_EQ(d->compute_perimeter(d->label_map, 8, 6, 7), 0u);
}

TEST(Perimeter, CornerCellsReadAcrossTheRowEndAndBelowThePlane) {
    ScopedDetector d(8, 6);
    // The top-right cell's right neighbour is the first cell of row 1.
    paint(d, d->label_map, {".......2", "2......."});
    EXPECT_EQ(d->compute_perimeter(d->label_map, 8, 6, 2), 2u + 3);
    // Below the bottom-left cell and past the bottom-right one the count
    // reads the row after the plane; here that row holds the label. The
    // bottom-row cell between them reads no such row.
    std::vector<unsigned int> plane(8 * 7, 0);
    for (int c = 0; c < 8; ++c) plane[6 * 8 + c] = 2;
    plane[5 * 8 + 0] = plane[5 * 8 + 3] = plane[5 * 8 + 7] = 2;
    EXPECT_EQ(d->compute_perimeter(plane.data(), 8, 6, 2), 2u + 3 + 2);
}
