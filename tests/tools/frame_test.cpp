#include "frame.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

using fingerdetect::Frame;
using fingerdetect::frame_from_planar_420;
using fingerdetect::picture_bytes_420;
using fingerdetect::planar_420_from_frame;

TEST(Frame, OddSizesKeepWholeChromaPairsInAnEvenStride) {
    // 5 x 3: chroma 3 x 2 per plane, rows of 6 bytes.
    EXPECT_EQ(picture_bytes_420(5, 3), 15u + 2 * 6);
    std::vector<uint8_t> planar(picture_bytes_420(5, 3));
    std::iota(planar.begin(), planar.end(), 0);
    Frame f;
    f.allocate(5, 3);
    frame_from_planar_420(planar.data(), planar.data() + 15, planar.data() + 21, f);
    EXPECT_TRUE(f.v_first);
    EXPECT_EQ(f.stride, 6);
    EXPECT_EQ(f.y[5], 4);    // padding repeats the row's last pixel
    EXPECT_EQ(f.y[6], 5);    // second row starts on the stride
    EXPECT_EQ(f.vu[6], 24);  // second chroma row: V of pair 0, then U
    EXPECT_EQ(f.vu[7], 18);

    std::vector<uint8_t> back(planar.size());
    planar_420_from_frame(f, back.data());
    EXPECT_EQ(back, planar);
}

TEST(Frame, UBeforeVFramesComeBackAsPlanarUAndV) {
    Frame f;
    f.allocate(2, 2, false);  // NV12: U first
    f.y = {1, 2, 3, 4};
    f.vu = {30, 40};
    EXPECT_EQ(f.ds_mode(), 0);
    std::vector<uint8_t> out(6);
    planar_420_from_frame(f, out.data());
    EXPECT_EQ(out, (std::vector<uint8_t>{1, 2, 3, 4, 30, 40}));
}

TEST(Frame, ExtentsAreDecimalWithinTheLimit) {
    int v = 0;
    EXPECT_TRUE(fingerdetect::parse_extent("16384", v));
    EXPECT_EQ(v, 16384);
    EXPECT_TRUE(fingerdetect::parse_extent("000640", v));  // up to six digits, leading zeros too
    EXPECT_EQ(v, 640);
    for (const char* bad : {"", "0", "16385", "12a", "-4", "+4", " 4", "1234567"}) {
        EXPECT_FALSE(fingerdetect::parse_extent(bad, v)) << bad;
    }
}
