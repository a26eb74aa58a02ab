#include <gtest/gtest.h>

#include "common/detector_fixture.h"
#include "common/synthetic_frame.h"

// Where the working images come from (the top-left area of whole 8 x 8
// blocks, read through the stride) is held by the platform digest's padded
// odd-sized clip; here, which chroma order each mode takes.
TEST(DownSampling, EveryModeButOneTakesThePairsSwapped) {
    ScopedDetector d(80, 60);
    Nv21Frame f(640, 480, 200, 120, 130);
    d->src_y = f.y_plane();
    d->src_vu = f.vu_plane();
    for (int mode : {1, 0, 2, -1}) {
        d->DownSampling(f.stride, mode);
        EXPECT_EQ(d->down_vu[0], mode == 1 ? 120 : 130) << "mode " << mode;
        EXPECT_EQ(d->down_vu[80 * 30 - 1], mode == 1 ? 130 : 120) << "mode " << mode;
    }
}
