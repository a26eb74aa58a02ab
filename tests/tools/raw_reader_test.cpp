#include "raw_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using fingerdetect::Frame;
using fingerdetect::RawReader;
using fingerdetect::ReadStatus;

TEST(RawReader, OddWidthsReadPaddedChromaRows) {
    // 3 x 2 NV12: 6 luma bytes, then one row of two pairs (4 bytes), as ffmpeg
    // writes it; the detector is told to swap the pairs. The 3 bytes after it
    // are a truncated second frame.
    const std::string bytes = std::string("abcdef") + "UVuv" + "abc";
    std::FILE* in = fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb");
    RawReader reader(in, "clip", true, 3, 2, false);
    Frame frame;
    std::string error;
    ASSERT_EQ(reader.next(frame, error), ReadStatus::kFrame) << error;
    EXPECT_EQ(std::string(frame.y.begin(), frame.y.end()), "abccdeff");
    EXPECT_EQ(std::string(frame.vu.begin(), frame.vu.end()), "UVuv");
    EXPECT_EQ(frame.ds_mode(), 0);
    EXPECT_EQ(reader.next(frame, error), ReadStatus::kError);
    EXPECT_EQ(error, "clip: frame 1 is truncated: 7 of 10 bytes missing");
}
