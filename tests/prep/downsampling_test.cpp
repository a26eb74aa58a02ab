#include <gtest/gtest.h>

#include <vector>

#include "common/detector_fixture.h"
#include "common/synthetic_frame.h"

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

TEST(DownSampling, EveryModeButOneTakesThePairsSwapped) {
    ScopedDetector d(80, 60);
    Nv21Frame f(640, 480, 200, 120, 130);
    for (int mode : {1, 0, 2, -1}) {
        downsample(d, f, mode);
        EXPECT_EQ(d->down_vu[0], mode == 1 ? 120 : 130) << "mode " << mode;
        EXPECT_EQ(d->down_vu[80 * 30 - 1], mode == 1 ? 130 : 120) << "mode " << mode;
    }
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
