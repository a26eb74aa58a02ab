// 3 x 3 Sobel gradient magnitude at one pixel: the truncated root of the
// squared magnitude of its window (features/sobel3_window.h, which also
// describes the border rules).
#include <cmath>

#include "features/sobel3_window.h"
#include "molo/detector.h"

void Molo_FingerDetect::Sobel3(unsigned char* plane, int row, int col, int width, int height,
                               int* magnitude) {
    const int sq = molo::sobel3_squared(plane, row, col, width, height);
    *magnitude = static_cast<int>(static_cast<float>(std::sqrt(static_cast<double>(sq))));
}
