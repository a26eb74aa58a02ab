// Erosion and dilation of finger_mask in place, with edge_map as the output
// plane that is then copied back over the mask.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "molo/detector.h"

namespace {

int clamp(int v, int hi) { return std::min(std::max(v, 0), hi); }

}  // namespace

// Erosion by the diagonal cross: a cell holding exactly 1 stays 1 unless one
// of its four diagonal neighbours is exactly 0. The straight neighbours are
// never looked at. On the border, neighbour rows and columns are clamped into
// the grid, so a diagonal outside the frame reads a cell of the frame; inside
// the grid the clamping changes nothing, so one rule serves every cell.
void Molo_FingerDetect::Erode() {
    const int rows = down_height;
    const int columns = down_width;
    const size_t n = static_cast<size_t>(rows) * static_cast<size_t>(columns);
    const unsigned char* mask = finger_mask;
    std::memset(edge_map, 0, n);

    auto at = [&](int r, int c) { return mask[r * columns + c]; };
    for (int r = 0; r < rows; ++r) {
        const int up = clamp(r - 1, rows - 1);
        const int down = clamp(r + 1, rows - 1);
        for (int c = 0; c < columns; ++c) {
            if (at(r, c) != 1) continue;
            const int left = clamp(c - 1, columns - 1);
            const int right = clamp(c + 1, columns - 1);
            const bool cut = at(up, left) == 0 || at(up, right) == 0 || at(down, left) == 0 ||
                             at(down, right) == 0;
            edge_map[r * columns + c] = cut ? 0 : 1;
        }
    }

    std::memcpy(finger_mask, edge_map, n);
}

// Dilation by a 5 x 5 square: every cell holding exactly 1 sets the 5 x 5
// block around it. In the two-cell border band the block is clamped into the
// grid, so a corner cell yields a 3 x 3 block.
void Molo_FingerDetect::Dilate() {
    const int rows = down_height;
    const int columns = down_width;
    const size_t n = static_cast<size_t>(rows) * static_cast<size_t>(columns);
    std::memset(edge_map, 0, n);

    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            if (finger_mask[r * columns + c] != 1) continue;
            const bool band = r < 2 || r >= rows - 2 || c < 2 || c >= columns - 2;
            for (int dr = -2; dr <= 2; ++dr) {
                for (int dc = -2; dc <= 2; ++dc) {
                    int tr = r + dr;
                    int tc = c + dc;
                    if (band) {
                        tr = clamp(tr, rows - 1);
                        tc = clamp(tc, columns - 1);
                    }
                    edge_map[tr * columns + tc] = 1;
                }
            }
        }
    }

    std::memcpy(finger_mask, edge_map, n);
}
