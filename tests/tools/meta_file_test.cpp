#include "meta_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using fingerdetect::CameraState;
using fingerdetect::MetaTrack;

namespace {

const CameraState kFallback{1.5f, 6000};

// A track reading text through the same stream functions as a file.
class TextTrack {
public:
    explicit TextTrack(const std::string& text) : text_(text) {
        opened_ = track.open(fmemopen(text_.data(), text_.size(), "r"), "m.csv", true, error);
    }
    bool opened() const { return opened_; }
    CameraState at(long frame) {
        CameraState state;
        EXPECT_TRUE(track.at(frame, kFallback, state, error)) << error;
        return state;
    }
    MetaTrack track;
    std::string error;

private:
    std::string text_;
    bool opened_ = false;
};

// The message for a text refused when it is opened or, at the latest, by
// the time frame 100 is reached.
std::string refusal(const std::string& text) {
    TextTrack t(text);
    CameraState state;
    if (t.opened()) {
        EXPECT_FALSE(t.track.at(100, kFallback, state, t.error)) << text;
    }
    return t.error;
}

}  // namespace

TEST(MetaFile, EachRowHoldsUntilTheNextOne) {
    TextTrack t("frame,gain,cct\r\n# warm-up\n\n3, 2.5, 4000\n10,1.0,5200.4\n");
    ASSERT_TRUE(t.opened()) << t.error;
    EXPECT_EQ(t.at(0).color_temp, 6000);  // before the first row
    EXPECT_EQ(t.at(3).gain, 2.5f);
    EXPECT_EQ(t.at(9).color_temp, 4000);
    EXPECT_EQ(t.at(10).color_temp, 5200);  // rounded to whole kelvin
    EXPECT_EQ(t.at(1000).gain, 1.0f);
}

// A first row is skipped only when it holds no number at all; a byte-order
// mark is not part of the first field.
TEST(MetaFile, OnlyAFirstRowWithoutNumbersIsAHeader) {
    for (const char* text : {"\xEF\xBB\xBF" "0,2.0,4000\n", "\xEF\xBB\xBF" "frame,gain,cct\n0,2.0,4000\n",
                             "frame,gain,\n0,2.0,4000\n"}) {
        TextTrack t(text);
        ASSERT_TRUE(t.opened()) << t.error;
        EXPECT_EQ(t.at(0).color_temp, 4000) << text;
    }
    EXPECT_EQ(refusal("+0,2.0,4000\n"), "m.csv:1: bad frame number \"+0\"");
    EXPECT_EQ(refusal("1.5,2.0,4000\n"), "m.csv:1: bad frame number \"1.5\"");
    EXPECT_EQ(refusal("# x\nfrme,2.0,4000\n"), "m.csv:2: bad frame number \"frme\"");
    EXPECT_EQ(refusal("0,1,5000\nframe,gain,cct\n"), "m.csv:2: bad frame number \"frame\"");
}

TEST(MetaFile, ErrorsNameTheLineAndTheField) {
    EXPECT_EQ(refusal("0,1.0\n"),
              "m.csv:1: expected 3 fields (frame, gain, colour temperature), found 2");
    EXPECT_EQ(refusal("0,1,5000\n#\n1,x,5000\n"), "m.csv:3: bad gain \"x\" (a number above 0)");
    EXPECT_NE(refusal("0,0,5000\n").find("bad gain"), std::string::npos);
    EXPECT_NE(refusal("0,1e-50,5000\n").find("bad gain"), std::string::npos);  // 0 as a float
    EXPECT_NE(refusal("0,1,500\n").find("m.csv:1: bad colour temperature \"500\""),
              std::string::npos);
    EXPECT_NE(refusal("4,1,5000\n4,1,5000\n").find("m.csv:2: frame 4 does not follow frame 4"),
              std::string::npos);
    EXPECT_NE(refusal("frame,gain,cct\n").find("no rows"), std::string::npos);
    EXPECT_EQ(refusal("0,1,5000\n" + std::string(2000, '1') + "\n"),
              "m.csv:2: line longer than 1024 bytes");
}

// Rows are read as the frames reach them, one row ahead: a bad row stops the
// run once the row before it applies, not before.
TEST(MetaFile, RowsAreReadAsTheFramesReachThem) {
    TextTrack t("0,1,5000\n5,2,5000\n9,x,5000\n");
    ASSERT_TRUE(t.opened()) << t.error;
    EXPECT_EQ(t.at(4).gain, 1.0f);
    CameraState state;
    EXPECT_FALSE(t.track.at(5, kFallback, state, t.error));
    EXPECT_EQ(t.error, "m.csv:3: bad gain \"x\" (a number above 0)");
}

TEST(MetaFile, AMissingFileOrADirectoryIsNamed) {
    MetaTrack track;
    std::string error;
    EXPECT_FALSE(track.load("/nonexistent/meta.csv", error));
    EXPECT_NE(error.find("cannot open /nonexistent/meta.csv"), std::string::npos);
    EXPECT_FALSE(track.load("/", error));
    EXPECT_EQ(error, "cannot read /: it is a directory");
}
