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

}  // namespace

TEST(Y4mHeader, RefusalsNameWhatWasRead) {
    const struct {
        const char* line;
        const char* message;  // a part of the error; "" when any error will do
    } cases[] = {
        {"YUV4MPEG2 W64 H48 C444",
         "chroma layout \"C444\" is not supported: only progressive 4:2:0 (C420jpeg, C420mpeg2, "
         "C420paldv, C420, or no C tag) is read; convert with ffmpeg -pix_fmt yuv420p"},
        {"YUV4MPEG2 W64 H48 Ib",
         "interlaced YUV4MPEG2 streams (Ib) are not supported: only progressive"},
        {"YUV4MPEG2 H48", "no W"},
        {"YUV4MPEG2W64 H48", "not a YUV4MPEG2 stream"},
        {"YUV4MPEG2 W0 H48", ""},
    };
    for (const auto& c : cases) {
        Y4mHeader h;
        std::string error;
        EXPECT_FALSE(parse_y4m_header(c.line, h, error)) << c.line;
        EXPECT_NE(error.find(c.message), std::string::npos) << c.line << ": " << error;
    }
}

TEST(Y4mReader, ABrokenStreamEndsWithTheFrameAndWhatIsWrong) {
    // 8 x 4: 32 + 2 * 8 = 48 bytes a picture.
    std::string short_picture = y4m_stream(8, 4, 2);
    short_picture.resize(short_picture.size() - 10);
    const struct {
        std::string bytes;
        std::string error;
    } cases[] = {
        {short_picture, "clip: frame 1 is truncated: 10 of 48 bytes missing"},
        {y4m_stream(8, 4, 1) + "FRA", "clip: frame 1 is truncated: "},
        {y4m_stream(8, 4, 1) + "FRAMES\n", "frame 1: expected a FRAME marker"},
    };
    for (const auto& c : cases) {
        MemoryStream s(c.bytes);
        std::string error;
        ASSERT_TRUE(s.reader.start(error));
        Frame frame;
        EXPECT_EQ(s.reader.next(frame, error), ReadStatus::kFrame);
        EXPECT_EQ(frame.vu[0], 'v');  // NV21: V before U
        EXPECT_EQ(s.reader.next(frame, error), ReadStatus::kError);
        EXPECT_NE(error.find(c.error), std::string::npos) << error;
    }
    MemoryStream cut("YUV4MPEG2 W8 H4");
    std::string error;
    EXPECT_FALSE(cut.reader.start(error));
    EXPECT_NE(error.find("ends inside its YUV4MPEG2 header"), std::string::npos) << error;
}
