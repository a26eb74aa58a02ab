// 5 x 5 gradient responses and the gradient direction in whole degrees.
#include <cmath>

#include "molo/detector.h"

void Molo_FingerDetect::Sobel5(unsigned char* plane, int row, int col, int width, int* vertical,
                               int* horizontal, int* /*reserved*/, int* angle) {
    // The second row is deliberately not the mirror of the fourth (pinned by
    // Sobel5.AsymmetricVerticalKernelAndAngle).
    static const int kVertical[5][5] = {{-1, -2, -3, -2, -1},
                                        {-2, -4, -6, -8, -2},
                                        {0, 0, 0, 0, 0},
                                        {2, 4, 6, 4, 2},
                                        {1, 2, 3, 2, 1}};
    static const int kHorizontal[5][5] = {{-1, -2, 0, 2, 1},
                                          {-2, -4, 0, 4, 2},
                                          {-3, -6, 0, 6, 3},
                                          {-2, -4, 0, 4, 2},
                                          {-1, -2, 0, 2, 1}};
    int v = 0;
    int h = 0;
    for (int r = 0; r < 5; ++r) {
        const unsigned char* line = plane + static_cast<long>(row - 2 + r) * width + (col - 2);
        for (int c = 0; c < 5; ++c) {
            v += kVertical[r][c] * line[c];
            h += kHorizontal[r][c] * line[c];
        }
    }
    *vertical = v;
    *horizontal = h;
    if (v == 0) {
        *angle = -90;
    } else {
        // The divisor is the single-precision value of 3.141592, widened, on
        // purpose (pinned by Sobel5.AsymmetricVerticalKernelAndAngle).
        const double degrees =
            std::atan(static_cast<double>(h) / static_cast<double>(v)) * 180.0 / 3.141592025756836;
        *angle = static_cast<int>(degrees);
    }
}
