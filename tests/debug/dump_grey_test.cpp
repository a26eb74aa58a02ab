#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <filesystem>

#include "debug/dump_files.h"

using GreyDump = DumpFiles;

// One overload of each pixel type: bytes as they are, integers clamped,
// floats truncated and clamped (NaN as 0), a divisor applied first, chroma
// planes interleaved.
TEST_F(GreyDump, EachPixelTypeHasItsRule) {
    Bytes bytes = {1, 2, 3, 4, 5, 6};  // 3 wide, 2 high
    ASSERT_EQ(TIFF_SaveY(bytes.data(), 3, 2, path("flat.tif")), 0);
    const FlatImage img = read_image(path("flat.tif"));
    EXPECT_EQ(img.type, 'g');
    EXPECT_EQ(img.height, 2);
    EXPECT_EQ(img.plane[0], bytes);

    std::vector<int> ints = {-5, 0, 255, 256, 1000, 77};
    ASSERT_EQ(TIFF_SaveY(ints.data(), 3, 2, path("int.tif")), 0);
    EXPECT_EQ(grey(path("int.tif")), (Bytes{0, 0, 255, 255, 255, 77}));

    std::vector<float> floats = {300.7f, -4.2f, 254.9f, NAN, 1e30f, -0.9f};
    ASSERT_EQ(TIFF_SaveY(rows_of(floats, 3).data(), 3, 2, path("f.tif")), 0);
    EXPECT_EQ(grey(path("f.tif")), (Bytes{255, 0, 254, 0, 255, 0}));

    std::vector<int> scaled = {100, 1200, -8, 7, INT_MIN, 513};
    ASSERT_EQ(TIFF_SaveY_Scale(scaled.data(), 2, 2, path("s4.tif"), 4), 0);
    EXPECT_EQ(grey(path("s4.tif")), (Bytes{25, 300 & 0xFF, 254, 1}));
    ASSERT_EQ(TIFF_SaveY_Scale(scaled.data() + 4, 2, 1, path("s-1.tif"), -1), 0);
    EXPECT_EQ(grey(path("s-1.tif")), (Bytes{0, -513 & 0xFF}));  // INT_MIN / -1 = 2^31
    EXPECT_NE(TIFF_SaveY_Scale(scaled.data(), 2, 2, path("s0.tif"), 0), 0);
    EXPECT_FALSE(std::filesystem::exists(path("s0.tif")));

    std::vector<int> first = {0x101, 2, 3, -1}, second = {10, 0x20B, 12, 13};  // 2 x 2
    std::vector<int*> r0 = rows_of(first, 2), r1 = rows_of(second, 2);
    int** planes[2] = {r0.data(), r1.data()};
    ASSERT_EQ(TIFF_SaveUV(planes, 2, 2, path("uv.tif")), 0);
    EXPECT_EQ(read_image(path("uv.tif")).width, 4);
    EXPECT_EQ(grey(path("uv.tif")), (Bytes{1, 10, 2, 11, 3, 12, 255, 13}));
}

TEST_F(GreyDump, ShiftedCropRepeatsEdgesAndLeavesMarginsZero) {
    Bytes src(20);  // 5 wide, 4 high, pixel (r, c) = 10 r + c
    for (int i = 0; i < 20; ++i) src[i] = static_cast<unsigned char>(10 * (i / 5) + i % 5);
    // Rows 1..2 and columns 1..3 written, (r, c) showing (r + 2, c - 2): the
    // shifts pass row 3 and column 0, whose values repeat.
    ASSERT_EQ(TIFF_SaveY_Offset(src.data(), 5, 4, 1, 1, 2, -2, path("a.tif")), 0);
    EXPECT_EQ(grey(path("a.tif")),
              (Bytes{0, 0, 0, 0, 0, 0, 30, 30, 31, 0, 0, 30, 30, 31, 0, 0, 0, 0, 0, 0}));
}

TEST_F(GreyDump, UnusableSizeOrPathFailsWithoutReadingTheSource) {
    EXPECT_NE(TIFF_SaveY(static_cast<unsigned char*>(nullptr), 0, 4, path("x.tif")), 0);
    EXPECT_NE(TIFF_Save_YUV2RGB(static_cast<unsigned char*>(nullptr), -2, 2, path("x.tif")), 0);
    unsigned char one = 7;
    EXPECT_NE(TIFF_SaveY(&one, 1, 1, path("no/such/folder/x.tif")), 0);
    EXPECT_NE(TIFF_SaveY(&one, 1, 1, nullptr), 0);
}
