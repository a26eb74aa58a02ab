// The 3 x 3 Sobel window of one working pixel and its squared gradient
// magnitude. Sobel3 takes the root of it; the skin mask only asks whether the
// magnitude is below a whole number L, which holds exactly when the square is
// below L * L (see flat_below), so it needs no root per pixel.
#ifndef MOLO_FEATURES_SOBEL3_WINDOW_H
#define MOLO_FEATURES_SOBEL3_WINDOW_H

#include <cstddef>

namespace molo {

// gx^2 + gy^2 of the 3 x 3 Sobel operator at (row, col). On the frame border
// the window is shifted inward instead of being clipped; the first and last
// rows keep the left column at col - 1 even at the last column, so there the
// window takes one byte past the row end (the planes carry a readable padding
// byte; pinned by Sobel3.FirstAndLastRowLastColumnReadOnePastTheRow). The
// corners (0, 0) and (height - 1, 0), and grids smaller than the
// window, count as flat (0).
inline int sobel3_squared(const unsigned char* plane, int row, int col, int width, int height) {
    if (width < 3 || height < 3) return 0;
    if (row == 0 && col == 0) return 0;
    int top;
    int left;
    if (row == height - 1) {
        if (col == 0) return 0;
        top = row == 0 ? 0 : height - 3;
        left = col - 1;
    } else if (col == 0) {
        top = row - 1;
        left = 0;
    } else if (row == 0) {
        top = 0;
        left = col - 1;
    } else if (col == width - 1) {
        top = row - 1;
        left = width - 3;
    } else {
        top = row - 1;
        left = col - 1;
    }
    const unsigned char* t = plane + static_cast<std::ptrdiff_t>(top) * width + left;
    const unsigned char* m = t + width;
    const unsigned char* b = m + width;
    const int gx = (t[2] - t[0]) + 2 * (m[2] - m[0]) + (b[2] - b[0]);
    const int gy = (b[0] + 2 * b[1] + b[2]) - (t[0] + 2 * t[1] + t[2]);
    return gx * gx + gy * gy;
}

// Whether the Sobel3 magnitude of a window, the truncated root
// (int)(float)sqrt(squared), is below the whole number `limit`. Truncation
// gives a value below `limit` exactly when the rounded root is below it, and
// the root of a whole number below limit^2 is at most limit - 1 / (2 limit),
// far from rounding up to `limit`; the root of limit^2 or more is at least
// `limit`.
inline bool flat_below(int squared, int limit) { return squared < limit * limit; }

}  // namespace molo

#endif  // MOLO_FEATURES_SOBEL3_WINDOW_H
