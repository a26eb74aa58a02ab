// 7 x 7 derivative responses. Both kernels are positive on the left and top
// sides (left minus right, top minus bottom); the corner stage multiplies the
// two responses, so the sign matters.
#include "molo/support.h"

void Derivative(unsigned char* plane, int row, int col, int width, int* vertical,
                int* horizontal) {
    static const int kHorizontal[7][7] = {{3, 2, 1, 0, -1, -2, -3}, {4, 3, 2, 0, -2, -3, -4},
                                          {5, 4, 3, 0, -3, -4, -5}, {6, 5, 4, 0, -4, -5, -6},
                                          {5, 4, 3, 0, -3, -4, -5}, {4, 3, 2, 0, -2, -3, -4},
                                          {3, 2, 1, 0, -1, -2, -3}};
    int h = 0;
    int v = 0;
    for (int r = 0; r < 7; ++r) {
        const unsigned char* line = plane + static_cast<long>(row - 3 + r) * width + (col - 3);
        for (int c = 0; c < 7; ++c) {
            h += kHorizontal[r][c] * line[c];
            v += kHorizontal[c][r] * line[c];  // the vertical kernel is the transpose
        }
    }
    *horizontal = h;
    *vertical = v;
}
