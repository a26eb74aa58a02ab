// Python buffers (numpy arrays, bytes, bytearray, memoryview) checked and
// described as planes. Errors name the argument: TypeError for something
// that is not uint8 data, ValueError for a wrong number of dimensions or a
// wrong shape.
#ifndef MOLO_PYTHON_BUFFER_PLANES_H
#define MOLO_PYTHON_BUFFER_PLANES_H

#include <pybind11/pybind11.h>

#include "plane.h"

namespace molo_python {

// Acquires obj's buffer; TypeError naming the argument unless it holds uint8.
pybind11::buffer_info uint8_buffer(pybind11::handle obj, const char* name);

// The luma plane: a height x width array.
Plane luma_plane(const pybind11::buffer_info& info, const char* name, int width, int height);

// The interleaved chroma plane of a width x height frame: (height + 1) / 2
// rows of 2 * ((width + 1) / 2) bytes, or the same rows of (width + 1) / 2
// pairs of 2 bytes.
Plane chroma_plane(const pybind11::buffer_info& info, const char* name, int width, int height);

// Both planes of one packed NV21 frame: 1-D (width * height luma bytes, then
// the chroma rows), or 2-D of height + (height + 1) / 2 rows of width bytes
// for an even width.
void nv21_planes(const pybind11::buffer_info& info, const char* name, int width, int height,
                 Plane& y, Plane& vu);

}  // namespace molo_python

#endif  // MOLO_PYTHON_BUFFER_PLANES_H
