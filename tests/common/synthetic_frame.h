// NV21 frames painted in working-grid cells (8 x 8 preview pixels each), so a
// test can state what the detector's working images will hold.
#ifndef MOLO_TESTS_SYNTHETIC_FRAME_H
#define MOLO_TESTS_SYNTHETIC_FRAME_H

#include <cstdint>
#include <vector>

struct Nv21Frame {
    int width, height, stride;
    std::vector<uint8_t> y;
    std::vector<uint8_t> vu;  // height / 2 rows of `stride` bytes, pairs (first, second)

    Nv21Frame(int w, int h, uint8_t luma, uint8_t first, uint8_t second, int row_stride = 0)
        : width(w),
          height(h),
          stride(row_stride > 0 ? row_stride : w),
          y(static_cast<size_t>(stride) * h, luma),
          vu(static_cast<size_t>(stride) * (h / 2)) {
        for (int r = 0; r < h / 2; ++r) {
            for (int c = 0; c + 1 < w; c += 2) {
                vu[static_cast<size_t>(r) * stride + c] = first;
                vu[static_cast<size_t>(r) * stride + c + 1] = second;
            }
        }
    }

    // Luma of working cell (row, col) of the working grid.
    void set_cell_luma(int row, int col, uint8_t luma) {
        for (int dy = 0; dy < 8; ++dy) {
            for (int dx = 0; dx < 8; ++dx) {
                y[static_cast<size_t>(row * 8 + dy) * stride + col * 8 + dx] = luma;
            }
        }
    }

    // Chroma of working chroma cell (row, pair): it covers working cells
    // rows 2*row..2*row+1 and columns 2*pair..2*pair+1.
    void set_pair(int row, int pair, uint8_t first, uint8_t second) {
        for (int dy = 0; dy < 8; ++dy) {
            uint8_t* p = &vu[static_cast<size_t>(row * 8 + dy) * stride + pair * 16];
            for (int j = 0; j < 8; ++j) {
                p[2 * j] = first;
                p[2 * j + 1] = second;
            }
        }
    }

    // Paints the working rectangle rows [r0, r1), columns [c0, c1) (chroma
    // is painted per 2 x 2 block, so even bounds give exact shapes).
    void paint(int r0, int r1, int c0, int c1, uint8_t luma, uint8_t first, uint8_t second) {
        for (int r = r0; r < r1; ++r) {
            for (int c = c0; c < c1; ++c) set_cell_luma(r, c, luma);
        }
        for (int r = r0 / 2; r < (r1 + 1) / 2; ++r) {
            for (int c = c0 / 2; c < (c1 + 1) / 2; ++c) set_pair(r, c, first, second);
        }
    }

    // Paints a finger-toned half disc of `radius` working cells entering from
    // the left (side 0) or the right edge (side 1), centred on the middle
    // row. Chroma is painted per 2 x 2 block, by the block's centre.
    void paint_half_disc(int side, int radius, uint8_t first = 147, uint8_t second = 117) {
        const int rows = height / 8;
        const int cols = width / 8;
        for (int br = 0; br < rows / 2; ++br) {
            for (int bc = 0; bc < cols / 2; ++bc) {
                const int dr = 2 * br + 1 - rows / 2;
                const int dc = side == 0 ? 2 * bc + 1 : cols - (2 * bc + 1);
                if (dr * dr + dc * dc <= radius * radius) set_pair(br, bc, first, second);
            }
        }
    }

    uint8_t* y_plane() { return y.data(); }
    uint8_t* vu_plane() { return vu.data(); }
};

#endif  // MOLO_TESTS_SYNTHETIC_FRAME_H
