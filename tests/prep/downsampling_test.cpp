#include <gtest/gtest.h>

#include <vector>

#include "common/detector_fixture.h"
#include "common/synthetic_frame.h"
#include "prep/parallel_rows.h"

namespace {

std::vector<uint8_t> plane(const unsigned char* p, size_t n) { return {p, p + n}; }

void downsample(ScopedDetector& d, Nv21Frame& f, int ds_mode) {
    d->src_y = f.y_plane();
    d->src_vu = f.vu_plane();
    d->DownSampling(f.stride, ds_mode);
}

}  // namespace

TEST(DownSampling, UniformFrameAndPairOrder) {
    ScopedDetector d(80, 60);
    Nv21Frame f(640, 480, 200, 120, 130);
    downsample(d, f, 1);
    EXPECT_EQ(plane(d->down_y, 80 * 60), std::vector<uint8_t>(80 * 60, 200));
    for (int i = 0; i < 30 * 80; i += 2) {
        ASSERT_EQ(d->down_vu[i], 120);
        ASSERT_EQ(d->down_vu[i + 1], 130);
    }
    for (int mode : {0, 2}) {
        downsample(d, f, mode);
        EXPECT_EQ(d->down_vu[0], 130) << "mode " << mode;
        EXPECT_EQ(d->down_vu[1], 120) << "mode " << mode;
    }
}

TEST(DownSampling, MeansTruncate) {
    ScopedDetector d(4, 4);
    Nv21Frame f(32, 32, 0, 0, 0);
    // Block (0, 0) sums to 16319 (mean 254.98) and block (0, 1) to 127 (1.98).
    for (int dy = 0; dy < 8; ++dy) {
        for (int dx = 0; dx < 8; ++dx) {
            f.y[dy * 32 + dx] = 255;
            f.y[dy * 32 + 8 + dx] = 2;
        }
    }
    f.y[0] = 254;
    f.y[8] = 1;
    // Chroma pair 0: first bytes sum to 63 -> 0, second bytes to 64 -> 1.
    for (int i = 0; i < 63; ++i) f.vu[(i / 8) * 32 + 2 * (i % 8)] = 1;
    for (int i = 0; i < 64; ++i) f.vu[(i / 8) * 32 + 2 * (i % 8) + 1] = 1;
    downsample(d, f, 1);
    EXPECT_EQ(d->down_y[0], 254);
    EXPECT_EQ(d->down_y[1], 1);
    EXPECT_EQ(d->down_vu[0], 0);
    EXPECT_EQ(d->down_vu[1], 1);
}

TEST(DownSampling, StridePaddingChangesNothing) {
    ScopedDetector d(80, 60);
    Nv21Frame tight(640, 480, 0, 0, 0);
    Nv21Frame padded(640, 480, 0, 0, 0, 704);
    for (int r = 0; r < 480; ++r) {
        for (int c = 0; c < 640; ++c) {
            const uint8_t v = static_cast<uint8_t>(r * 7 + c * 13);
            tight.y[r * 640 + c] = v;
            padded.y[r * 704 + c] = v;
            if (r < 240) {
                tight.vu[r * 640 + c] = static_cast<uint8_t>(v ^ 0x5A);
                padded.vu[r * 704 + c] = static_cast<uint8_t>(v ^ 0x5A);
            }
        }
        for (int c = 640; c < 704; ++c) padded.y[r * 704 + c] = 255;  // never read
    }
    downsample(d, tight, 1);
    const auto y = plane(d->down_y, 80 * 60);
    const auto vu = plane(d->down_vu, 80 * 30);
    downsample(d, padded, 1);
    EXPECT_EQ(plane(d->down_y, 80 * 60), y);
    EXPECT_EQ(plane(d->down_vu, 80 * 30), vu);
}

TEST(DownSampling, RemainderIsCroppedNotCentred) {
    // 1000 x 500: working 124 x 62; columns 992.. and rows 496.. are never read.
    ScopedDetector d(ScopedDetector::Preview{1000, 500});
    EXPECT_EQ(d->down_width, 124);
    EXPECT_EQ(d->down_height, 62);
    Nv21Frame f(1000, 500, 10, 100, 100);
    for (int r = 0; r < 500; ++r) {
        for (int c = 992; c < 1000; ++c) f.y[r * 1000 + c] = 250;
    }
    for (int c = 0; c < 1000; ++c) {
        for (int r = 496; r < 500; ++r) f.y[r * 1000 + c] = 250;
        for (int r = 248; r < 250; ++r) f.vu[r * 1000 + c] = 250;
    }
    downsample(d, f, 1);
    EXPECT_EQ(plane(d->down_y, 124 * 62), std::vector<uint8_t>(124 * 62, 10));
    EXPECT_EQ(plane(d->down_vu, 124 * 31), std::vector<uint8_t>(124 * 31, 100));
}

TEST(DownSampling, SerialAndParallelAgree) {
    ScopedDetector d(240, 134);
    ASSERT_EQ(d->down_width, 240);
    Nv21Frame f(1920, 1080, 0, 0, 0);
    uint32_t state = 12345;
    for (auto& b : f.y) b = static_cast<uint8_t>((state = state * 1103515245u + 12345u) >> 24);
    for (auto& b : f.vu) b = static_cast<uint8_t>((state = state * 1103515245u + 12345u) >> 24);
    molo::set_execution_contexts(1);
    downsample(d, f, 0);
    const auto y = plane(d->down_y, 240 * 134);
    const auto vu = plane(d->down_vu, 240 * 67);
    molo::set_execution_contexts(4);
    downsample(d, f, 0);
    molo::set_execution_contexts(0);
    EXPECT_EQ(plane(d->down_y, 240 * 134), y);
    EXPECT_EQ(plane(d->down_vu, 240 * 67), vu);
}
