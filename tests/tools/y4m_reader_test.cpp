#include "y4m_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tool_test_support.h"

using fingerdetect::Frame;
using fingerdetect::parse_y4m_header;
using fingerdetect::ReadStatus;
using fingerdetect::Y4mHeader;
using fingerdetect::Y4mReader;
using tool_test::y4m_stream;

namespace {

// A reader over bytes held in memory.
struct MemoryStream {
    explicit MemoryStream(const std::string& bytes)
        : text(bytes), file(fmemopen(text.data(), text.size(), "rb")), reader(file, "clip", true) {}
    std::string text;
    std::FILE* file;
    Y4mReader reader;
};

std::string header_error(const std::string& line) {
    Y4mHeader header;
    std::string error;
    EXPECT_FALSE(parse_y4m_header(line, header, error)) << line;
    return error;
}

}  // namespace

TEST(Y4mHeader, AcceptsEvery420TagAndNoTag) {
    for (const char* tag : {"", " C420", " C420jpeg", " C420mpeg2", " C420paldv"}) {
        Y4mHeader h;
        std::string error;
        EXPECT_TRUE(
            parse_y4m_header(std::string("YUV4MPEG2 W64 H48 F25:1 Ip A1:1") + tag, h, error))
            << tag << ": " << error;
        EXPECT_EQ(h.width, 64);
        EXPECT_EQ(h.height, 48);
        EXPECT_EQ(h.rate_num, 25);
        EXPECT_EQ(h.rate_den, 1);
    }
}

TEST(Y4mHeader, SkipsCommentsAndUnknownParameters) {
    Y4mHeader h;
    std::string error;
    ASSERT_TRUE(parse_y4m_header(
        "YUV4MPEG2 XYSCSS=420JPEG W32  H16 XCOLORRANGE=LIMITED Zfuture I? F0:0 C420jpeg X", h,
        error))
        << error;
    EXPECT_EQ(h.width, 32);
    EXPECT_EQ(h.height, 16);
    EXPECT_EQ(h.rate_num, 0);
}

TEST(Y4mHeader, RefusesOtherLayoutsAndInterlacingNamingWhatIsRead) {
    for (const char* tag : {"C422", "C444", "C444alpha", "Cmono", "C411", "C420p10", "C"}) {
        const std::string error = header_error(std::string("YUV4MPEG2 W64 H48 ") + tag);
        EXPECT_NE(error.find(tag), std::string::npos) << error;
        EXPECT_NE(error.find("4:2:0 (C420jpeg, C420mpeg2, C420paldv, C420, or no C tag)"),
                  std::string::npos)
            << error;
    }
    for (const char* mode : {"It", "Ib", "Im"}) {
        const std::string error = header_error(std::string("YUV4MPEG2 W64 H48 ") + mode);
        EXPECT_NE(error.find("interlaced"), std::string::npos) << error;
        EXPECT_NE(error.find("progressive 4:2:0"), std::string::npos) << error;
    }
}

TEST(Y4mHeader, RefusesMissingOrBadSizesAndMalformedFields) {
    EXPECT_NE(header_error("YUV4MPEG2 H48").find("no W"), std::string::npos);
    EXPECT_NE(header_error("YUV4MPEG2 W64").find("no H"), std::string::npos);
    for (const char* line : {"YUV4MPEG2 W0 H48", "YUV4MPEG2 W-4 H48", "YUV4MPEG2 W64x H48",
                             "YUV4MPEG2 W16385 H48", "YUV4MPEG2 W64 H", "YUV4MPEG2 W64 H48 F30",
                             "YUV4MPEG2 W64 H48 A1:", "YUV4MPEG2 W64 H48 Ix"}) {
        header_error(line);
    }
    EXPECT_NE(header_error("YUV4MPEG W64 H48").find("not a YUV4MPEG2 stream"), std::string::npos);
    EXPECT_NE(header_error("YUV4MPEG2W64 H48").find("not a YUV4MPEG2 stream"), std::string::npos);
}

TEST(Y4mReader, ReadsFramesWithMarkerParametersAsNv21) {
    MemoryStream s(y4m_stream(6, 4, 2, " C420mpeg2", " Ixyz XFOO=1"));
    std::string error;
    ASSERT_TRUE(s.reader.start(error)) << error;
    Frame frame;
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(s.reader.next(frame, error), ReadStatus::kFrame) << error;
        EXPECT_EQ(frame.width, 6);
        EXPECT_EQ(frame.y[0], 'y');
        EXPECT_EQ(frame.vu[0], 'v');  // V before U
        EXPECT_EQ(frame.vu[1], 'u');
        EXPECT_EQ(frame.ds_mode(), 1);
    }
    EXPECT_EQ(s.reader.next(frame, error), ReadStatus::kEnd);
}

TEST(Y4mReader, ReportsTruncationWithTheFrameAndTheMissingBytes) {
    // 8 x 4: 32 + 2 * 8 = 48 bytes a picture; the second picture lacks 10.
    std::string bytes = y4m_stream(8, 4, 2);
    bytes.resize(bytes.size() - 10);
    MemoryStream s(bytes);
    std::string error;
    ASSERT_TRUE(s.reader.start(error));
    Frame frame;
    EXPECT_EQ(s.reader.next(frame, error), ReadStatus::kFrame);
    EXPECT_EQ(s.reader.next(frame, error), ReadStatus::kError);
    EXPECT_EQ(error, "clip: frame 1 is truncated: 10 of 48 bytes missing");

    MemoryStream cut(y4m_stream(8, 4, 1) + "FRA");
    ASSERT_TRUE(cut.reader.start(error));
    EXPECT_EQ(cut.reader.next(frame, error), ReadStatus::kFrame);
    EXPECT_EQ(cut.reader.next(frame, error), ReadStatus::kError);
    EXPECT_NE(error.find("frame 1 is truncated"), std::string::npos) << error;
    EXPECT_NE(error.find("48 bytes"), std::string::npos) << error;
}

TEST(Y4mReader, RefusesAStrayMarkerAndEmptyOrHeaderlessInput) {
    MemoryStream stray(y4m_stream(8, 4, 1) + "FRAMES\n");
    std::string error;
    ASSERT_TRUE(stray.reader.start(error));
    Frame frame;
    EXPECT_EQ(stray.reader.next(frame, error), ReadStatus::kFrame);
    EXPECT_EQ(stray.reader.next(frame, error), ReadStatus::kError);
    EXPECT_NE(error.find("frame 1: expected a FRAME marker"), std::string::npos) << error;

    MemoryStream empty("");
    EXPECT_FALSE(empty.reader.start(error));
    EXPECT_NE(error.find("empty"), std::string::npos);
    MemoryStream partial("YUV4MPEG2 W8 H4");
    EXPECT_FALSE(partial.reader.start(error));
    EXPECT_NE(error.find("ends inside its YUV4MPEG2 header"), std::string::npos) << error;
}

TEST(Y4mReader, KnowsTheFrameCountOfAFile) {
    const std::string path = tool_test::scratch_path("clip.y4m");
    tool_test::write_file(path, y4m_stream(8, 4, 5, " F15:2"));
    Y4mReader reader(std::fopen(path.c_str(), "rb"), path, true);
    std::string error;
    ASSERT_TRUE(reader.start(error));
    EXPECT_EQ(reader.expected_frames(), 5);
    int num = 0, den = 0;
    reader.frame_rate(num, den);
    EXPECT_EQ(num, 15);
    EXPECT_EQ(den, 2);
    std::remove(path.c_str());
}
