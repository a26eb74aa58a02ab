// A read-only view of one image plane as a Python buffer describes it: any
// row, pair and byte step, so that sliced and padded numpy arrays are read
// where they lie.
#ifndef MOLO_PYTHON_PLANE_H
#define MOLO_PYTHON_PLANE_H

#include <cstddef>
#include <cstdint>

namespace molo_python {

struct Plane {
    const uint8_t* data = nullptr;
    int rows = 0;
    int cols = 0;  // bytes per row: the width for luma, two per chroma pair
    // Byte (r, j) lies at data + r * row_step + (j / 2) * pair_step + (j % 2) * byte_step;
    // luma has pair_step == 2 * byte_step.
    std::ptrdiff_t row_step = 0;
    std::ptrdiff_t pair_step = 0;
    std::ptrdiff_t byte_step = 0;

    // Bytes of a row follow one another in memory.
    bool packed_rows() const { return byte_step == 1 && pair_step == 2; }
};

// True when both planes can go to the detector as they lie: packed rows and
// one common row pitch of at least width bytes that fits the detector's int.
bool shares_one_pitch(const Plane& y, const Plane& vu, int width);

// Copies a plane into dst, rows dst_pitch bytes apart.
void copy_plane(const Plane& plane, uint8_t* dst, std::size_t dst_pitch);

}  // namespace molo_python

#endif  // MOLO_PYTHON_PLANE_H
