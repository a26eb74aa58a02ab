#include <gtest/gtest.h>

#include "debug/dump_files.h"

using ColourDump = DumpFiles;

// R = Y + 1.402 dV, G = Y - 0.344 dU - 0.714 dV, B = Y + 1.772 dU, by hand,
// on a 4 x 4 NV21 frame with a different (V, U) pair in each 2 x 2 cell.
TEST_F(ColourDump, ConvertsByHand) {
    Bytes nv21 = {255, 100, 0,   50,  10,  20,  30, 40,  60,  70, 80,  90,
                  110, 120, 130, 140, 255, 128, 0,  128, 150, 90, 128, 200};
    ASSERT_EQ(TIFF_Save_YUV2RGB(nv21.data(), 4, 4, path("rgb.tif")), 0);
    const FlatImage img = read_image(path("rgb.tif"));
    ASSERT_EQ(img.type, 'c');
    const struct {
        int r, c, rgb[3];
    } cases[] = {
        {0, 0, {255, 164, 255}},  // Y 255, V 255: R 433 -> 255
        {0, 2, {0, 91, 0}},       // Y 0, V 0: R -179.5 -> 0
        {0, 1, {255, 9, 100}},    // G 9.322
        {2, 1, {100, 67, 2}},     // Y 70, V 150, U 90: 100.844, 67.364, 2.664
        {3, 0, {140, 107, 42}},   // the same pair, Y 110
        {3, 3, {140, 115, 255}},  // Y 140, U 200: G 115.232, B 267.6
    };
    for (const auto& k : cases) {
        for (int p = 0; p < 3; ++p) EXPECT_EQ(img.at(p, k.r, k.c), k.rgb[p]) << k.r << k.c << p;
    }
}

// Sums of products in double precision, each rounded to a float before it is
// clamped and truncated: G of the first block is 76 below Y exactly in
// decimal, and comes out one lower in single precision or without that
// rounding. The second block takes the clamps.
TEST_F(ColourDump, RoundsToFloatBeforeTruncating) {
    Bytes nv21 = {167, 168, 255, 0, 169, 170, 0, 255, 180, 241, 255, 0};
    ASSERT_EQ(TIFF_Save_YUV2RGB(nv21.data(), 4, 2, path("edge.tif")), 0);
    const FlatImage img = read_image(path("edge.tif"));
    EXPECT_EQ(img.plane[0], (Bytes{239, 240, 255, 178, 241, 242, 178, 255}));
    EXPECT_EQ(img.plane[1], (Bytes{91, 92, 208, 0, 93, 94, 0, 208}));
    EXPECT_EQ(img.plane[2], (Bytes{255, 255, 28, 0, 255, 255, 0, 28}));
}

// 3 x 3: one chroma row holding one pair and a spare byte. The last row and
// column share that pair, and nothing past the buffer is read.
TEST_F(ColourDump, OddFrameSharesTheLastChromaPair) {
    Bytes nv21 = {255, 0, 255, 0, 0, 0, 255, 0, 255, 255, 128, 7};
    ASSERT_EQ(TIFF_Save_YUV2RGB(nv21.data(), 3, 3, path("odd.tif")), 0);
    const FlatImage img = read_image(path("odd.tif"));
    for (int i : {0, 2, 6, 8}) EXPECT_EQ(img.plane[1][i], 164) << i;
}
