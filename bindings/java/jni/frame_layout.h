// How the three planes of a 4:2:0 camera image reach the detector: checked
// against the frame size, then handed over in place when the chroma already
// lies interleaved under the luma's row pitch, or else rewritten into a
// caller-owned NV21 buffer.
#ifndef MOLO_JNI_FRAME_LAYOUT_H
#define MOLO_JNI_FRAME_LAYOUT_H

#include <cstddef>
#include <cstdint>

namespace molo_jni {

// One plane as the camera hands it over: size bytes readable from data;
// sample (row, col) at row * row_stride + col * pixel_stride.
struct Plane {
    const uint8_t* data = nullptr;
    int64_t size = 0;
    int row_stride = 0;
    int pixel_stride = 0;
};

// Checks that plane holds rows x cols samples: strides that make sense and
// enough bytes up to the last sample (a buffer may end there rather than at
// a full row). Returns nullptr when it does, else writes a message naming
// the plane into message and returns it.
const char* check_plane(const Plane& plane, const char* name, int cols, int rows, char* message,
                        size_t message_size);

// What MoloFinDetect_Execute is given for a frame.
struct DetectorInput {
    const uint8_t* y = nullptr;
    const uint8_t* vu = nullptr;
    int stride = 0;
    int ds_mode = 1;
};

// The planes as they lie when no copy is needed: luma samples adjacent,
// chroma interleaved (pixel stride 2, V and U one byte apart, in either
// order) with the luma's row stride. Returns false for any other layout.
bool in_place(const Plane& y, const Plane& u, const Plane& v, DetectorInput& input);

// Row pitch and byte count of the NV21 buffer convert() writes for a
// width x height frame: both planes share the width rounded up to even.
int converted_stride(int width);
size_t converted_bytes(int width, int height);

// Copies checked planes of any layout into out (converted_bytes long) as
// NV21: luma rows, then V,U pairs, all converted_stride apart.
DetectorInput convert(const Plane& y, const Plane& u, const Plane& v, int width, int height,
                      uint8_t* out);

}  // namespace molo_jni

#endif  // MOLO_JNI_FRAME_LAYOUT_H
