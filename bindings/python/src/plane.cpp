#include "plane.h"

#include <climits>
#include <cstring>

namespace molo_python {

bool shares_one_pitch(const Plane& y, const Plane& vu, int width) {
    return y.packed_rows() && vu.packed_rows() && y.row_step == vu.row_step &&
           y.row_step >= width && y.row_step <= INT_MAX;
}

void copy_plane(const Plane& plane, uint8_t* dst, std::size_t dst_pitch) {
    for (int r = 0; r < plane.rows; ++r, dst += dst_pitch) {
        const uint8_t* row = plane.data + r * plane.row_step;
        if (plane.packed_rows()) {
            std::memcpy(dst, row, static_cast<std::size_t>(plane.cols));
            continue;
        }
        for (int j = 0; j < plane.cols; ++j) {
            dst[j] = row[(j >> 1) * plane.pair_step + (j & 1) * plane.byte_step];
        }
    }
}

}  // namespace molo_python
