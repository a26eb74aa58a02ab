// The angles of the Hough accumulator, and the position of a pixel in rho
// steps along the normal of one of them.
#ifndef MOLO_FEATURES_HOUGH_RHO_H
#define MOLO_FEATURES_HOUGH_RHO_H

#include "molo/detector.h"

namespace molo {

// One accumulator column per whole degree in [0, 180).
constexpr int kHoughAngles = 180;

// ((cos a * row + sin a * col) + hough_diag) + 0.5 in single precision and in
// this order; its truncation is the nearest rho index of the pixel. The row
// pairs with the cosine and the column with the sine.
inline float rho_position(const Molo_FingerDetect& d, int row, int col, int a) {
    const float along =
        d.cos_table[a] * static_cast<float>(row) + d.sin_table[a] * static_cast<float>(col);
    return (along + static_cast<float>(d.hough_diag)) + 0.5f;
}

}  // namespace molo

#endif  // MOLO_FEATURES_HOUGH_RHO_H
