// 3 x 3 Sobel gradient magnitude at one pixel. On the frame border the
// window is shifted inward instead of being clipped; the first and last rows
// keep the left column at col - 1 even at the last column, so there the window
// takes one byte past the row end (the planes carry a readable padding byte).
// Grids smaller than the window count as flat.
#include <cmath>

#include "molo/detector.h"

void Molo_FingerDetect::Sobel3(unsigned char* plane, int row, int col, int width, int height,
                               int* magnitude) {
    int top;
    int left;
    // A grid narrower or lower than the window (a preview under 24 pixels)
    // has no window to shift into: it counts as flat.
    if (width < 3 || height < 3) {
        *magnitude = 0;
        return;
    }
    if (row == 0 && col == 0) {
        *magnitude = 0;
        return;
    }
    if (row == height - 1) {
        if (col == 0) {
            *magnitude = 0;
            return;
        }
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
    const unsigned char* t = plane + static_cast<long>(top) * width + left;
    const unsigned char* m = t + width;
    const unsigned char* b = m + width;
    const int gx = (t[2] - t[0]) + 2 * (m[2] - m[0]) + (b[2] - b[0]);
    const int gy = (b[0] + 2 * b[1] + b[2]) - (t[0] + 2 * t[1] + t[2]);
    const int sq = gx * gx + gy * gy;
    *magnitude = static_cast<int>(static_cast<float>(std::sqrt(static_cast<double>(sq))));
}
