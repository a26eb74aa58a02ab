// Preview frames for the benchmarks, painted in working-grid cells (8 x 8
// frame pixels each) over photo or synthetic backgrounds: textured scenes
// without a finger, fingers and finger-like objects at the frame's edge,
// large skin-coloured areas, and the speck frames that grow the most regions
// the detector allows.
#ifndef MOLO_BENCH_BENCH_SCENES_H
#define MOLO_BENCH_BENCH_SCENES_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "common/synthetic_frame.h"

namespace bench {

// A smooth pseudo-random field in [0, 1): random values on a lattice of
// `cell` pixels, blended bilinearly. The lattice has rows enough for the
// longer side, since scenes also read it transposed, at (y, x).
class ValueNoise {
public:
    ValueNoise(int width, int height, int cell, uint32_t seed)
        : cell_(cell),
          columns_(width / cell + 2),
          knots_(static_cast<size_t>(columns_) * (std::max(width, height) / cell + 2)) {
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
            const bool centre =
                std::abs(px - width / 2) < width / 6 && std::abs(py - height / 2) < height / 5;
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

// A plain wall with sensor grain, of one chroma (first, second). Grey
// (128, 128) lies within the radius of the two pale colour entries, which
// take the whole frame for skin and turn it away as too much of it; a cool
// tone such as (118, 140) matches no entry, and no region is grown.
inline Nv21Frame plain_scene(int width, int height, uint8_t first = 128, uint8_t second = 128) {
    Nv21Frame f(width, height, 0, first, second);
    uint32_t grain = 7;
    for (uint8_t& y : f.y) {
        grain = grain * 1103515245u + 12345u;
        y = static_cast<uint8_t>(110 + ((grain >> 16) & 15));
    }
    return f;
}

// A photo frame made by bench/photo_frames.py: NAME_WxH.nv21 in `dir`, luma
// then interleaved chroma, V before U. False when the file is missing or short.
inline bool load_photo(const std::string& dir, const std::string& name, int width, int height,
                       Nv21Frame& out) {
    const std::string path =
        dir + "/" + name + "_" + std::to_string(width) + "x" + std::to_string(height) + ".nv21";
    Nv21Frame f(width, height, 0, 0, 0);
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    const bool whole = std::fread(f.y.data(), 1, f.y.size(), file) == f.y.size() &&
                       std::fread(f.vu.data(), 1, f.vu.size(), file) == f.vu.size();
    std::fclose(file);
    if (whole) out = std::move(f);
    return whole;
}

// Paints the working cells for which inside(row, col) holds with an evenly
// lit luma and one chroma pair; a pair takes the colour when the centre of
// its 2 x 2 block is inside.
template <typename Inside>
void paint_shape(Nv21Frame& f, Inside inside, uint8_t luma, uint8_t first, uint8_t second) {
    const int rows = f.height / 8;
    const int cols = f.width / 8;
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            if (inside(static_cast<float>(r), static_cast<float>(c))) f.set_cell_luma(r, c, luma);
        }
    }
    for (int br = 0; br < rows / 2; ++br) {
        for (int bc = 0; bc < cols / 2; ++bc) {
            if (inside(2.0f * br + 0.5f, 2.0f * bc + 0.5f)) f.set_pair(br, bc, first, second);
        }
    }
}

// A finger: a band of half-width `half` working cells whose axis leaves the
// point (row0, col0) at `degrees` from the row direction and runs `length`
// cells, ending in a round tip.
struct Capsule {
    float row0, col0, degrees, length, half;
    bool operator()(float r, float c) const {
        const float a = degrees * 3.14159265f / 180.0f;
        const float dr = r - row0;
        const float dc = c - col0;
        const float along = dc * std::cos(a) + dr * std::sin(a);
        const float across = -dc * std::sin(a) + dr * std::cos(a);
        if (along <= length) return along >= -2.0f * half && std::abs(across) <= half;
        const float tip = along - length;
        return tip * tip + across * across <= half * half;
    }
};

// Skin tones of the colour table's entries, as (first, second) chroma bytes:
// kWarm lies within the radius of the three warm entries, kPale within that of
// the two pale ones, and neither within any other entry.
struct Tone {
    uint8_t first, second;
};
constexpr Tone kWarm{156, 109};
constexpr Tone kPale{133, 129};
constexpr Tone kFinger{147, 117};

// Specks in the left seed strip (working columns 0 to 9). The luma repeats
// 0, 50, 100, 50 along the diagonals, which makes the 3 x 3 gradient zero
// exactly on the cells whose row and column add up to an even number and
// large on the others: the flat cells form a checkerboard, and every flat
// cell of a skin tone is a region of its own, two per chroma pair. Pair rows
// [first_pair_row, end_pair_row) of the strip take `tone`.
inline void paint_specks(Nv21Frame& f, int first_pair_row, int end_pair_row, Tone tone) {
    static const uint8_t kDiagonal[4] = {0, 50, 100, 50};
    for (int r = 0; r < f.height / 8; ++r) {
        for (int c = 0; c < f.width / 8; ++c) f.set_cell_luma(r, c, kDiagonal[(r + c) % 4]);
    }
    for (int pr = first_pair_row; pr < end_pair_row; ++pr) {
        for (int pair = 0; pair < 5; ++pair) f.set_pair(pr, pair, tone.first, tone.second);
    }
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
