// 7 x 7 derivative responses. Both kernels are positive on the left and top
// sides (left minus right, top minus bottom); the corner stage multiplies the
// two responses, so the sign matters (pinned by
// HarrisCorner.DerivativeMeasuresLeftMinusRightAndTopMinusBottom).
//
// The horizontal kernel, K[r][c] = sign(3 - c) * (|3 - c| + t[r]) with
// t = 0 1 2 3 2 1 0 (rows 3 4 5 6 5 4 3 on the left side), is the sum of a
// column ramp and a row-weighted column sign; the vertical kernel is its
// transpose. Each window row is therefore reduced to four sums first. The
// arithmetic is in integers, so the order of the sums does not matter.
#include "molo/support.h"

void Derivative(unsigned char* plane, int row, int col, int width, int* vertical, int* horizontal) {
    static const int kRowWeight[7] = {0, 1, 2, 3, 2, 1, 0};
    int h = 0;
    int v = 0;
    for (int r = 0; r < 7; ++r) {
        const unsigned char* x = plane + static_cast<long>(row - 3 + r) * width + (col - 3);
        const int left = x[0] + x[1] + x[2];
        const int right = x[4] + x[5] + x[6];
        const int ramp = 3 * (x[0] - x[6]) + 2 * (x[1] - x[5]) + (x[2] - x[4]);  // sum of (3 - c) x
        const int tent = x[1] + x[5] + 2 * (x[2] + x[4]) + 3 * x[3];             // sum of t[c] x
        const int all = left + x[3] + right;
        const int side = r < 3 ? 1 : (r > 3 ? -1 : 0);
        h += ramp + kRowWeight[r] * (left - right);
        v += (3 - r) * all + side * tent;
    }
    *horizontal = h;
    *vertical = v;
}
