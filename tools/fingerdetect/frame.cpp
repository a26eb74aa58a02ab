#include "frame.h"

#include <cstring>

namespace fingerdetect {

void Frame::allocate(int w, int h, bool chroma_v_first) {
    width = w;
    height = h;
    stride = w + (w & 1);
    v_first = chroma_v_first;
    y.resize(static_cast<size_t>(stride) * h);
    vu.resize(static_cast<size_t>(stride) * chroma_rows());
}

bool parse_extent(const std::string& digits, int& value) {
    if (digits.empty() || digits.size() > 6) return false;
    long v = 0;
    for (char ch : digits) {
        if (ch < '0' || ch > '9') return false;
        v = v * 10 + (ch - '0');
    }
    if (v < 1 || v > kMaxExtent) return false;
    value = static_cast<int>(v);
    return true;
}

size_t picture_bytes_420(int width, int height) {
    const size_t cw = (static_cast<size_t>(width) + 1) / 2;
    const size_t ch = (static_cast<size_t>(height) + 1) / 2;
    return static_cast<size_t>(width) * height + 2 * cw * ch;
}

void frame_from_planar_420(const uint8_t* y, const uint8_t* u, const uint8_t* v, Frame& frame) {
    const size_t w = frame.width;
    const size_t stride = frame.stride;
    for (int r = 0; r < frame.height; ++r) {
        uint8_t* row = &frame.y[r * stride];
        std::memcpy(row, y + r * w, w);
        if (stride > w) row[w] = row[w - 1];  // padding column repeats the edge
    }
    const size_t cw = frame.chroma_width();
    for (int r = 0; r < frame.chroma_rows(); ++r) {
        uint8_t* out = &frame.vu[r * stride];
        const uint8_t* ur = u + r * cw;
        const uint8_t* vr = v + r * cw;
        for (size_t c = 0; c < cw; ++c) {
            out[2 * c] = vr[c];
            out[2 * c + 1] = ur[c];
        }
    }
    frame.v_first = true;
}

void planar_420_from_frame(const Frame& frame, uint8_t* out) {
    const size_t w = frame.width;
    const size_t stride = frame.stride;
    for (int r = 0; r < frame.height; ++r) std::memcpy(out + r * w, &frame.y[r * stride], w);
    const size_t cw = frame.chroma_width();
    const size_t ch = frame.chroma_rows();
    uint8_t* u = out + w * frame.height;
    uint8_t* v = u + cw * ch;
    const int u_offset = frame.v_first ? 1 : 0;
    for (size_t r = 0; r < ch; ++r) {
        const uint8_t* in = &frame.vu[r * stride];
        for (size_t c = 0; c < cw; ++c) {
            u[r * cw + c] = in[2 * c + u_offset];
            v[r * cw + c] = in[2 * c + 1 - u_offset];
        }
    }
}

}  // namespace fingerdetect
