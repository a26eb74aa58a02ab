#include "meta_file.h"

#include <gtest/gtest.h>

#include <string>

using fingerdetect::CameraState;
using fingerdetect::MetaTrack;

namespace {

std::string parse_error(const std::string& text) {
    MetaTrack track;
    std::string error;
    EXPECT_FALSE(track.parse(text, "m.csv", error)) << text;
    return error;
}

}  // namespace

TEST(MetaFile, EachRowHoldsUntilTheNextOne) {
    MetaTrack track;
    std::string error;
    ASSERT_TRUE(
        track.parse("frame,gain,cct\r\n# warm-up\n\n3, 2.5, 4000\n10,1.0,5200.4\n", "m.csv", error))
        << error;
    EXPECT_EQ(track.rows(), 2u);
    const CameraState fallback{1.5f, 6000};
    EXPECT_EQ(track.at(0, fallback).color_temp, 6000);  // before the first row
    EXPECT_EQ(track.at(3, fallback).gain, 2.5f);
    EXPECT_EQ(track.at(9, fallback).color_temp, 4000);
    EXPECT_EQ(track.at(10, fallback).color_temp, 5200);  // rounded to whole kelvin
    EXPECT_EQ(track.at(1000, fallback).gain, 1.0f);
}

TEST(MetaFile, ErrorsNameTheLineAndTheField) {
    EXPECT_EQ(parse_error("0,1.0\n"),
              "m.csv:1: expected 3 fields (frame, gain, colour temperature), found 2");
    EXPECT_EQ(parse_error("0,1,5000\n#\n1,x,5000\n"), "m.csv:3: bad gain \"x\" (a number above 0)");
    EXPECT_NE(parse_error("0,0,5000\n").find("bad gain"), std::string::npos);
    EXPECT_NE(parse_error("0,nan,5000\n").find("bad gain"), std::string::npos);
    EXPECT_NE(parse_error("0,1,500\n").find("m.csv:1: bad colour temperature \"500\""),
              std::string::npos);
    EXPECT_NE(parse_error("0,1,5000\n-1,1,5000\n").find("m.csv:2: bad frame number"),
              std::string::npos);
    EXPECT_NE(parse_error("0,1,5000\n1.5,1,5000\n").find("bad frame number \"1.5\""),
              std::string::npos);
    EXPECT_NE(parse_error("4,1,5000\n4,1,5000\n").find("m.csv:2: frame 4 does not follow frame 4"),
              std::string::npos);
    EXPECT_NE(parse_error("frame,gain,cct\n").find("no rows"), std::string::npos);
    // Only the first row may be a header.
    EXPECT_NE(parse_error("0,1,5000\nframe,gain,cct\n").find("m.csv:2: "), std::string::npos);
}

TEST(MetaFile, AMissingFileIsNamed) {
    MetaTrack track;
    std::string error;
    EXPECT_FALSE(track.load("/nonexistent/meta.csv", error));
    EXPECT_NE(error.find("cannot open /nonexistent/meta.csv"), std::string::npos);
}
