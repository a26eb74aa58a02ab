// Preview frames for the benchmarks: a finger-free scene with natural
// texture, the same scene with a finger held at the left edge, and a frame
// whose left seed strip is dotted with skin-toned specks, each of which grows
// a region of its own.
#ifndef MOLO_BENCH_BENCH_SCENES_H
#define MOLO_BENCH_BENCH_SCENES_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "common/synthetic_frame.h"

namespace bench {

// A smooth pseudo-random field in [0, 1): random values on a lattice of
// `cell` pixels, blended bilinearly.
class ValueNoise {
public:
    ValueNoise(int width, int height, int cell, uint32_t seed)
        : cell_(cell), columns_(width / cell + 2), knots_(static_cast<size_t>(columns_) * (height / cell + 2)) {
        for (float& k : knots_) {
            seed = seed * 1664525u + 1013904223u;
            k = static_cast<float>(seed >> 8) / 16777216.0f;
        }
    }

    float at(int x, int y) const {
        const int gx = x / cell_;
        const int gy = y / cell_;
        const float fx = static_cast<float>(x % cell_) / static_cast<float>(cell_);
        const float fy = static_cast<float>(y % cell_) / static_cast<float>(cell_);
        const float* k0 = &knots_[static_cast<size_t>(gy) * columns_ + gx];
        const float* k1 = k0 + columns_;
        const float top = k0[0] + (k0[1] - k0[0]) * fx;
        const float bottom = k1[0] + (k1[1] - k1[0]) * fx;
        return top + (bottom - top) * fy;
    }

private:
    int cell_;
    int columns_;
    std::vector<float> knots_;
};

inline uint8_t clamp_byte(float v) { return static_cast<uint8_t>(std::clamp(v, 0.0f, 255.0f)); }

// Walls, shadows and objects: luma from large soft shapes plus mid-scale
// detail and sensor grain; chroma wanders through greens, blues and greys,
// with one warm, skin-like patch in the middle of the frame and a few warm
// flecks near the left edge that grow small regions and are rejected.
inline Nv21Frame natural_scene(int width, int height) {
    Nv21Frame f(width, height, 0, 0, 0);
    const ValueNoise broad(width, height, 256, 11);
    const ValueNoise detail(width, height, 24, 23);
    const ValueNoise hue(width, height, 192, 37);
    const ValueNoise warm(width, height, 96, 41);
    uint32_t grain = 99;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            grain = grain * 1103515245u + 12345u;
            const float noise = static_cast<float>((grain >> 16) & 31) - 16.0f;
            f.y[static_cast<size_t>(y) * f.stride + x] =
                clamp_byte(30.0f + 170.0f * broad.at(x, y) + 60.0f * detail.at(x, y) + noise);
        }
    }
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x + 1 < width; x += 2) {
            const int px = x;
            const int py = 2 * y;
            float v = 100.0f + 22.0f * hue.at(px, py);
            float u = 133.0f + 24.0f * hue.at(width - 1 - px, py);
            // A warm patch in the middle (a face, a wooden table, a hand far
            // off) and warm flecks along the left edge.
            const bool centre = std::abs(px - width / 2) < width / 6 && std::abs(py - height / 2) < height / 5;
            const bool fleck = px < width / 12 && warm.at(px, py) > 0.8f;
            if (centre && warm.at(px, py) > 0.35f) {
                v = 158.0f + 6.0f * warm.at(py, px);
                u = 106.0f - 4.0f * warm.at(px, py);
            } else if (fleck) {
                v = 146.0f + 6.0f * warm.at(py, px);
                u = 116.0f - 4.0f * warm.at(px, py);
            }
            uint8_t* pair = &f.vu[static_cast<size_t>(y) * f.stride + x];
            pair[0] = clamp_byte(v);
            pair[1] = clamp_byte(u);
        }
    }
    return f;
}

// The natural scene with a finger-toned half disc of `radius` working cells
// entering from the left edge, lit evenly so its luma is flat.
inline Nv21Frame finger_scene(int width, int height, int radius) {
    Nv21Frame f = natural_scene(width, height);
    const int rows = height / 8;
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c <= radius; ++c) {
            const int dr = r - rows / 2;
            if (dr * dr + c * c <= (radius + 1) * (radius + 1)) f.set_cell_luma(r, c, 150);
        }
    }
    f.paint_half_disc(0, radius);
    return f;
}

// Skin-toned specks in the left seed strip (working columns 0 to 9), as a
// finely patterned skin-coloured object against the edge would give. The
// luma repeats 0, 50, 100, 50 along the diagonals, which makes the 3 x 3
// gradient zero exactly on the cells whose row and column add up to an even
// number and large on the others: the flat cells form a checkerboard, and
// every flat cell of skin colour is a region of its own. Skin colour is
// painted on 28 pair rows of the strip and on three pairs more, which gives
// exactly 253 regions for the three warm tones of the colour table.
inline Nv21Frame speck_scene(int width, int height) {
    Nv21Frame f(width, height, 0, 100, 160);
    static const uint8_t kDiagonal[4] = {0, 50, 100, 50};
    for (int r = 0; r < height / 8; ++r) {
        for (int c = 0; c < width / 8; ++c) f.set_cell_luma(r, c, kDiagonal[(r + c) % 4]);
    }
    for (int pair_row = 0; pair_row < 28; ++pair_row) {
        for (int pair = 0; pair < 5; ++pair) f.set_pair(pair_row, pair, 156, 109);
    }
    for (int pair = 0; pair < 3; ++pair) f.set_pair(28, pair, 156, 109);
    return f;
}

// A block of bytes starting on a page boundary, as the camera's preview
// buffers do. Where a buffer starts decides which cache sets its rows fall
// into; with page-aligned frames every run of a benchmark sees the same
// placement, instead of whatever the heap handed out after the cases before.
class PageAligned {
public:
    explicit PageAligned(size_t bytes)
        : data_(static_cast<uint8_t*>(std::aligned_alloc(kPage, round_up(bytes)))) {}
    uint8_t* data() { return data_.get(); }

private:
    static constexpr size_t kPage = 4096;
    static size_t round_up(size_t n) { return (n + kPage - 1) / kPage * kPage + kPage; }
    struct Free {
        void operator()(uint8_t* p) const { std::free(p); }
    };
    std::unique_ptr<uint8_t, Free> data_;
};

// A synthetic frame copied into page-aligned luma and chroma planes.
struct CameraFrame {
    int width;
    int height;
    int stride;
    PageAligned y;
    PageAligned vu;

    explicit CameraFrame(const Nv21Frame& f)
        : width(f.width), height(f.height), stride(f.stride), y(f.y.size()), vu(f.vu.size()) {
        std::memcpy(y.data(), f.y.data(), f.y.size());
        std::memcpy(vu.data(), f.vu.data(), f.vu.size());
    }
    uint8_t* y_plane() { return y.data(); }
    uint8_t* vu_plane() { return vu.data(); }
};

}  // namespace bench

#endif  // MOLO_BENCH_BENCH_SCENES_H
