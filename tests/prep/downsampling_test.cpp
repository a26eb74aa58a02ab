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

// Fills both planes' pixels with a fixed pseudo-random texture.
void texture(Nv21Frame& f) {
    uint32_t state = 12345;
    for (int r = 0; r < f.height; ++r) {
        for (int c = 0; c < f.width; ++c) {
            state = state * 1103515245u + 12345u;
            f.y[r * f.stride + c] = static_cast<uint8_t>(state >> 24);
            if (r < f.height / 2) f.vu[r * f.stride + c] = static_cast<uint8_t>(state >> 16);
        }
    }
}

}  // namespace

TEST(DownSampling, UniformFrameAndPairOrder) {
    ScopedDetector d(80, 60);
    Nv21Frame f(640, 480, 200, 120, 130);
    downsample(d, f, 1);
    EXPECT_EQ(plane(d->down_y, 80 * 60), std::vector<uint8_t>(80 * 60, 200));
    EXPECT_EQ(d->down_vu[80 * 30 - 2], 120);
    EXPECT_EQ(d->down_vu[80 * 30 - 1], 130);
    for (int mode : {0, 2}) {
        downsample(d, f, mode);
        EXPECT_EQ(d->down_vu[0], 130) << "mode " << mode;
        EXPECT_EQ(d->down_vu[1], 120) << "mode " << mode;
    }
}

TEST(DownSampling, MeansTruncate) {
    ScopedDetector d(4, 4);
    Nv21Frame f(32, 32, 0, 0, 0);
    // Block (0, 0) sums to 16319 (mean 254.98), block (0, 1) to 127 (1.98).
    for (int dy = 0; dy < 8; ++dy) {
        for (int dx = 0; dx < 8; ++dx) {
            f.y[dy * 32 + dx] = 255;
            f.y[dy * 32 + 8 + dx] = 2;
        }
    }
    f.y[0] = 254;
    f.y[8] = 1;
    // Chroma pair 0: first bytes sum to 63, second bytes to 64.
    for (int i = 0; i < 64; ++i) {
        f.vu[(i / 8) * 32 + 2 * (i % 8)] = i == 0 ? 0 : 1;
        f.vu[(i / 8) * 32 + 2 * (i % 8) + 1] = 1;
    }
    downsample(d, f, 1);
    EXPECT_EQ(d->down_y[0], 254);
    EXPECT_EQ(d->down_y[1], 1);
    EXPECT_EQ(d->down_vu[0], 0);
    EXPECT_EQ(d->down_vu[1], 1);
}

TEST(DownSampling, StridePaddingAndCroppedRemainderAreNeverRead) {
    // 1000 x 500: working 124 x 62; columns 992.. and rows 496.. are cropped.
    ScopedDetector d(ScopedDetector::Preview{1000, 500});
    ASSERT_EQ(d->down_width, 124);
    ASSERT_EQ(d->down_height, 62);
    Nv21Frame tight(1000, 500, 0, 0, 0);
    Nv21Frame padded(1000, 500, 0, 0, 0, 1064);
    texture(tight);
    for (int r = 0; r < 500; ++r) {
        std::copy_n(&tight.y[r * 1000], 1000, &padded.y[r * 1064]);
        if (r < 250) std::copy_n(&tight.vu[r * 1000], 1000, &padded.vu[r * 1064]);
    }
    downsample(d, tight, 1);
    const auto y = plane(d->down_y, 124 * 62);
    const auto vu = plane(d->down_vu, 124 * 31);
    // Paint everything outside the area read, padding included.
    for (int r = 0; r < 500; ++r) {
        for (int c = 0; c < 1064; ++c) {
            if (r >= 496 || c >= 992) padded.y[r * 1064 + c] = 255;
            if (r < 250 && (r >= 248 || c >= 992)) padded.vu[r * 1064 + c] = 255;
        }
    }
    downsample(d, padded, 1);
    EXPECT_EQ(plane(d->down_y, 124 * 62), y);
    EXPECT_EQ(plane(d->down_vu, 124 * 31), vu);
}

TEST(DownSampling, SerialAndParallelAgree) {
    ScopedDetector d(240, 134);
    Nv21Frame f(1920, 1080, 0, 0, 0);
    texture(f);
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
