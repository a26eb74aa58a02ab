#include "raw_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tool_test_support.h"

using fingerdetect::Frame;
using fingerdetect::RawReader;
using fingerdetect::ReadStatus;

TEST(RawReader, ReadsWholeFramesAndNamesATruncatedLastOne) {
    // 6 x 4 NV12: 24 + 12 = 36 bytes a frame; two frames and 20 bytes.
    const std::string path = tool_test::scratch_path("clip.nv12");
    std::string bytes;
    for (int f = 0; f < 2; ++f) bytes += std::string(24, 'y') + "uvuvuvuvuvuv";
    bytes += std::string(20, 'y');
    tool_test::write_file(path, bytes);

    RawReader reader(std::fopen(path.c_str(), "rb"), path, true, 6, 4, false);
    EXPECT_EQ(reader.frame_bytes(), 36u);
    EXPECT_EQ(reader.expected_frames(), 2);
    Frame frame;
    std::string error;
    for (int f = 0; f < 2; ++f) {
        ASSERT_EQ(reader.next(frame, error), ReadStatus::kFrame);
        EXPECT_EQ(frame.vu[0], 'u');
        EXPECT_EQ(frame.ds_mode(), 0);  // the detector swaps the pairs
    }
    EXPECT_EQ(reader.next(frame, error), ReadStatus::kError);
    EXPECT_EQ(error, path + ": frame 2 is truncated: 16 of 36 bytes missing");
    std::remove(path.c_str());
}

TEST(RawReader, OddWidthsReadPaddedChromaRows) {
    // 3 x 2: 6 luma bytes, then one row of two pairs (4 bytes), as ffmpeg writes it.
    const std::string bytes = std::string("abcdef") + "VUvu";
    std::FILE* in = fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb");
    RawReader reader(in, "clip", true, 3, 2, true);
    Frame frame;
    std::string error;
    ASSERT_EQ(reader.next(frame, error), ReadStatus::kFrame) << error;
    EXPECT_EQ(std::string(frame.y.begin(), frame.y.end()), "abccdeff");
    EXPECT_EQ(std::string(frame.vu.begin(), frame.vu.end()), "VUvu");
    EXPECT_EQ(reader.next(frame, error), ReadStatus::kEnd);
}
