#include <gtest/gtest.h>

#include "common/log_capture.h"
#include "debug/dump_files.h"

using ReadBack = DumpFiles;

namespace {

// An RGB file of the given size whose pixel i (row-major) is rgb(i).
template <typename Rgb>
void write_rgb(char* file, int width, int height, Rgb rgb) {
    TIFF_IMG img;
    ASSERT_EQ(get_TIFF(&img, height, width, 'c'), 0);
    for (int p = 0; p < 3; ++p)
        for (int i = 0; i < width * height; ++i) img.color[p][i / width][i % width] = rgb(i, p);
    FILE* fp = std::fopen(file, "wb");
    ASSERT_NE(fp, nullptr);
    EXPECT_EQ(write_TIFF(fp, &img), 0);
    std::fclose(fp);
    free_TIFF(&img);
}

}  // namespace

// 3 x 3, so one whole 2 x 2 block; the last row and column are black.
// Block means: R 360 >> 2 = 90, G 200 >> 2 = 50, B 259 >> 2 = 64.
// V = 0.499*90 - 0.418*50 - 0.0813*64 + 128 = 146.81 -> 146
// U = -0.169*90 - 0.331*50 + 0.499*64 + 128 = 128.18 -> 128
// Luma 0.587 G + 0.299 R + 0.114 B: 100.61, 53.38, 50.51, 50.06.
// Then flat blocks whose luma, V and U each differ by one when computed in
// single precision rather than double.
TEST_F(ReadBack, YuvConvertsBackByHand) {
    const int rgb[3][4] = {{200, 100, 50, 10}, {20, 40, 60, 80}, {255, 0, 3, 1}};
    write_rgb(path("rgb.tif"), 3, 3, [&](int i, int p) {
        return static_cast<unsigned char>(i % 3 < 2 && i < 6 ? rgb[p][i / 3 * 2 + i % 3] : 0);
    });
    Bytes y(9, 99), vu(3, 99);
    ASSERT_EQ(TIFF_readYUV(y.data(), vu.data(), 3, 3, path("rgb.tif")), 0);
    EXPECT_EQ(y, (Bytes{100, 53, 0, 50, 50, 0, 0, 0, 0}));
    EXPECT_EQ(vu, (Bytes{146, 128, 99}));

    const unsigned char blocks[3][3] = {{0, 72, 24}, {1, 170, 30}, {0, 249, 81}};
    write_rgb(path("blocks.tif"), 6, 2, [&](int i, int p) { return blocks[i % 6 / 2][p]; });
    y.assign(12, 0);
    vu.assign(6, 0);
    ASSERT_EQ(TIFF_readYUV(y.data(), vu.data(), 6, 2, path("blocks.tif")), 0);
    EXPECT_EQ(y, (Bytes{44, 44, 103, 103, 155, 155, 44, 44, 103, 103, 155, 155}));
    EXPECT_EQ(vu, (Bytes{95, 116, 55, 86, 17, 85}));
}

TEST_F(ReadBack, RefusesOtherSizesTypesAndMissingFiles) {
    Bytes src = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 128, 128};  // 4 x 2 luma, then chroma
    ASSERT_EQ(TIFF_SaveY(src.data(), 4, 2, path("grey.tif")), 0);
    ASSERT_EQ(TIFF_Save_YUV2RGB(src.data(), 4, 2, path("colour.tif")), 0);
    Bytes y(8, 99), vu(4, 99);
    ASSERT_EQ(TIFF_readY(y.data(), 4, 2, path("grey.tif")), 0);
    EXPECT_EQ(y, Bytes(src.begin(), src.begin() + 8));

    LogCapture log;
    y.assign(8, 99);
    EXPECT_EQ(TIFF_readY(y.data(), 2, 4, path("grey.tif")), 1);
    EXPECT_EQ(TIFF_readYUV(y.data(), vu.data(), 4, 1, path("colour.tif")), 1);
    EXPECT_EQ(TIFF_readY(y.data(), 4, 2, path("colour.tif")), 1);
    EXPECT_EQ(TIFF_readYUV(y.data(), vu.data(), 4, 2, path("grey.tif")), 1);
    EXPECT_EQ(TIFF_readYUV(y.data(), vu.data(), 4, 2, path("missing.tif")), 1);
    const LoggedMessage wrong = {6, "Error! wrong width or wrong height\n"};
    EXPECT_EQ(
        log.messages(),
        (std::vector<LoggedMessage>{
            wrong, wrong, {6, "Error! not a grey image\n"}, {6, "Error! not a colour image\n"}}));
    EXPECT_EQ(y, Bytes(8, 99));
    EXPECT_EQ(vu, Bytes(4, 99));
}
