// Perimeter count of a region: for every cell of the region, the sides it
// shares with cells outside the region. Sides facing the frame's edge do not
// count.
#include "regions/perimeter.h"

#include "molo/detector.h"

// Each cell's position class is tested in a fixed order and the first match
// decides which neighbours are read. Three corners follow from that order and
// are kept as they are (pinned by
// Perimeter.CountsSidesFacingOtherCellsAndReadsPastThreeCorners):
//  - the top-right cell is in the first-row class, so its "right" neighbour is
//    the next element of the plane, the first cell of row 1;
//  - the bottom-left cell is in the first-column class, so its "down"
//    neighbour lies one row past the plane;
//  - the bottom-right cell is in the last-row class, so its "right" neighbour
//    is the element just past the plane.
// The label plane is allocated with one zero row below it for the last two.
// Rows and columns are walked over the detector's grid; `stride` addresses
// the plane and marks the last column, `rows` marks the last row.
unsigned int Molo_FingerDetect::compute_perimeter(unsigned int* labels, int stride, int rows,
                                                  int label) {
    return molo::perimeter_count(labels, stride, rows, label, 0, down_height, 0, down_width);
}

namespace molo {

unsigned int perimeter_count(const unsigned int* labels, int stride, int rows, int label,
                             int row_begin, int row_end, int col_begin, int col_end) {
    const unsigned int mark = static_cast<unsigned int>(label);
    unsigned int total = 0;
    for (int r = row_begin; r < row_end; ++r) {
        for (int c = col_begin; c < col_end; ++c) {
            const unsigned int* cell = labels + r * stride + c;
            if (*cell != mark) continue;
            auto in = [&](int offset) -> unsigned int { return cell[offset] == mark ? 1u : 0u; };
            const int right = 1;
            const int left = -1;
            const int down = stride;
            const int up = -stride;
            if (r == 0 && c == 0) {
                total += 2 - in(right)-in(down);
            } else if (r == 0) {
                total += 3 - in(right)-in(down)-in(left);
            } else if (c == 0) {
                total += 3 - in(right)-in(down)-in(up);
            } else if (r == rows - 1) {
                total += 3 - in(right)-in(up)-in(left);
            } else if (c == stride - 1) {
                total += 3 - in(up)-in(left)-in(down);
            } else {
                total += 4 - in(right)-in(down)-in(up)-in(left);
            }
        }
    }
    return total;
}

}  // namespace molo
