#include <gtest/gtest.h>

#include "debug/dump_files.h"

using ColourDump = DumpFiles;

namespace {

// A 4 x 4 NV21 frame with a different (V, U) pair in each 2 x 2 cell.
struct Frame {
    Bytes y = {255, 100, 0, 50, 10, 20, 30, 40, 60, 70, 80, 90, 110, 120, 130, 140};
    Bytes vu = {255, 128, 0, 128, 150, 90, 128, 200};
    Bytes v = {255, 0, 150, 128}, u = {128, 128, 90, 200};  // as half-size planes
};

}  // namespace

TEST_F(ColourDump, AllOverloadsAgreeAndConvertByHand) {
    Frame f;
    Bytes nv21 = f.y;
    nv21.insert(nv21.end(), f.vu.begin(), f.vu.end());
    std::vector<float> fy(f.y.begin(), f.y.end()), fv(f.v.begin(), f.v.end()),
        fu(f.u.begin(), f.u.end());
    auto y_rows = rows_of(f.y, 4), vu_rows = rows_of(f.vu, 4), v_rows = rows_of(f.v, 2),
         u_rows = rows_of(f.u, 2);
    auto fy_rows = rows_of(fy, 4), fv_rows = rows_of(fv, 2), fu_rows = rows_of(fu, 2);
    unsigned char** planes[2] = {v_rows.data(), u_rows.data()};
    float** fplanes[2] = {fv_rows.data(), fu_rows.data()};

    ASSERT_EQ(TIFF_Save_YUV2RGB(nv21.data(), 4, 4, path("0.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB(f.y.data(), f.vu.data(), 4, 4, path("1.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB(y_rows.data(), vu_rows.data(), 4, 4, path("2.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB(y_rows.data(), planes, 4, 4, path("3.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB(fy_rows.data(), planes, 4, 4, path("4.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB(fy_rows.data(), fplanes, 4, 4, path("5.tif")), 0);
    ASSERT_EQ(TIFF_Save_Input_NV21_to_RGB(f.y.data(), f.vu.data(), 4, 4, path("6.tif")), 0);
    ASSERT_EQ(TIFF_Save_Input_NV21_to_RGB(y_rows.data(), vu_rows.data(), 4, 4, path("7.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB_offset(f.y.data(), f.vu.data(), 4, 4, 0, 0, 0, 0, path("8.tif")),
              0);

    const DumpImage img = read_image(path("0.tif"));
    ASSERT_EQ(img.type, 'c');
    for (int i = 1; i <= 8; ++i) {
        const DumpImage other = read_image(path(std::to_string(i) + ".tif"));
        for (int p = 0; p < 3; ++p) EXPECT_EQ(other.plane[p], img.plane[p]) << i;
    }

    // R = Y + 1.402 dV, G = Y - 0.344 dU - 0.714 dV, B = Y + 1.772 dU, by hand.
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

TEST_F(ColourDump, CropTakesChromaOfTheClampedSource) {
    Frame f;
    ASSERT_EQ(TIFF_Save_YUV2RGB(f.y.data(), f.vu.data(), 4, 4, path("whole.tif")), 0);
    // Rows 1..2 written, each showing row 0 (shift -5) one column to the right.
    ASSERT_EQ(TIFF_Save_YUV2RGB_offset(f.y.data(), f.vu.data(), 4, 4, 1, 0, -5, 1, path("c.tif")),
              0);
    const DumpImage a = read_image(path("whole.tif")), b = read_image(path("c.tif"));
    for (int p = 0; p < 3; ++p) {
        for (int c = 0; c < 4; ++c) {
            const int src = c < 3 ? c + 1 : 3;
            EXPECT_EQ(b.at(p, 0, c), 0);
            EXPECT_EQ(b.at(p, 1, c), a.at(p, 0, src));
            EXPECT_EQ(b.at(p, 2, c), a.at(p, 0, src));
            EXPECT_EQ(b.at(p, 3, c), 0);
        }
    }
}

// Sums of products in double precision, each rounded to a float before it is
// clamped and truncated: G of the first block is 76 below Y exactly in
// decimal, and comes out one lower in single precision or without that
// rounding. The second block
// takes the clamps.
TEST_F(ColourDump, RoundsToFloatBeforeTruncating) {
    Bytes nv21 = {167, 168, 255, 0, 169, 170, 0, 255, 180, 241, 255, 0};
    ASSERT_EQ(TIFF_Save_YUV2RGB(nv21.data(), 4, 2, path("edge.tif")), 0);
    const DumpImage img = read_image(path("edge.tif"));
    EXPECT_EQ(img.plane[0], (Bytes{239, 240, 255, 178, 241, 242, 178, 255}));
    EXPECT_EQ(img.plane[1], (Bytes{91, 92, 208, 0, 93, 94, 0, 208}));
    EXPECT_EQ(img.plane[2], (Bytes{255, 255, 28, 0, 255, 255, 0, 28}));
}

// 3 x 3: one chroma row holding one pair and a spare byte. The last row and
// column share that pair, and nothing past the buffer is read.
TEST_F(ColourDump, OddFrameSharesTheLastChromaPair) {
    Bytes nv21 = {255, 0, 255, 0, 0, 0, 255, 0, 255, 255, 128, 7};
    ASSERT_EQ(TIFF_Save_YUV2RGB(nv21.data(), 3, 3, path("odd.tif")), 0);
    const DumpImage img = read_image(path("odd.tif"));
    for (int i : {0, 2, 6, 8}) EXPECT_EQ(img.plane[1][i], 164) << i;
}
