#include "frame_layout.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace molo_jni {

const char* check_plane(const Plane& plane, const char* name, int cols, int rows, char* message,
                        size_t message_size) {
    if (plane.pixel_stride < 1) {
        std::snprintf(message, message_size, "%s plane: pixel stride %d is below 1", name,
                      plane.pixel_stride);
        return message;
    }
    // Bytes from a row's first sample to its last, inclusive.
    const int64_t row_span = static_cast<int64_t>(cols - 1) * plane.pixel_stride + 1;
    if (plane.row_stride < row_span) {
        std::snprintf(message, message_size,
                      "%s plane: row stride %d is below the %" PRId64
                      " bytes of a row of %d samples",
                      name, plane.row_stride, row_span, cols);
        return message;
    }
    const int64_t needed = static_cast<int64_t>(rows - 1) * plane.row_stride + row_span;
    if (plane.size < needed) {
        std::snprintf(message, message_size,
                      "%s plane: %" PRId64 " bytes, but %d rows of %d samples need %" PRId64, name,
                      plane.size, rows, cols, needed);
        return message;
    }
    return nullptr;
}

bool in_place(const Plane& y, const Plane& u, const Plane& v, DetectorInput& input) {
    if (y.pixel_stride != 1 || u.pixel_stride != 2 || v.pixel_stride != 2) return false;
    if (u.row_stride != y.row_stride || v.row_stride != y.row_stride) return false;
    if (v.data + 1 == u.data) {
        input = DetectorInput{y.data, v.data, y.row_stride, 1};
        return true;
    }
    if (u.data + 1 == v.data) {
        // Any ds_mode but 1 tells the detector the pairs are U,V.
        input = DetectorInput{y.data, u.data, y.row_stride, 0};
        return true;
    }
    return false;
}

int converted_stride(int width) { return width + (width & 1); }

size_t converted_bytes(int width, int height) {
    return static_cast<size_t>(converted_stride(width)) * (height + (height + 1) / 2);
}

DetectorInput convert(const Plane& y, const Plane& u, const Plane& v, int width, int height,
                      uint8_t* out) {
    const size_t stride = static_cast<size_t>(converted_stride(width));
    uint8_t* out_vu = out + stride * height;
    for (int r = 0; r < height; ++r) {
        const uint8_t* src = y.data + static_cast<ptrdiff_t>(r) * y.row_stride;
        uint8_t* dst = out + stride * r;
        if (y.pixel_stride == 1) {
            std::memcpy(dst, src, static_cast<size_t>(width));
        } else {
            for (int c = 0; c < width; ++c)
                dst[c] = src[static_cast<ptrdiff_t>(c) * y.pixel_stride];
        }
    }
    const int chroma_cols = (width + 1) / 2;
    const int chroma_rows = (height + 1) / 2;
    for (int r = 0; r < chroma_rows; ++r) {
        const uint8_t* src_u = u.data + static_cast<ptrdiff_t>(r) * u.row_stride;
        const uint8_t* src_v = v.data + static_cast<ptrdiff_t>(r) * v.row_stride;
        uint8_t* dst = out_vu + stride * r;
        for (int c = 0; c < chroma_cols; ++c) {
            dst[2 * c] = src_v[static_cast<ptrdiff_t>(c) * v.pixel_stride];
            dst[2 * c + 1] = src_u[static_cast<ptrdiff_t>(c) * u.pixel_stride];
        }
    }
    return DetectorInput{out, out_vu, static_cast<int>(stride), 1};
}

}  // namespace molo_jni
