#include "options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using fingerdetect::InputKind;
using fingerdetect::Options;

namespace {

bool parse(std::vector<const char*> args, Options& options, std::string& error) {
    args.insert(args.begin(), "molo-fingerdetect");
    return fingerdetect::parse_options(static_cast<int>(args.size()), args.data(), options, error);
}

std::string error_of(std::vector<const char*> args) {
    Options options;
    std::string error;
    EXPECT_FALSE(parse(args, options, error));
    return error;
}

}  // namespace

TEST(Options, InputsAreSortedIntoOneKind) {
    Options o;
    std::string error;
    ASSERT_TRUE(parse({"-"}, o, error));
    EXPECT_EQ(o.kind, InputKind::kY4m);
    ASSERT_TRUE(parse({"--size=640x480", "--nv12", "clip.yuv"}, o, error)) << error;
    EXPECT_EQ(o.kind, InputKind::kRaw);
    EXPECT_TRUE(o.nv12);
    EXPECT_EQ(o.height, 480);
    ASSERT_TRUE(parse({"a.tif", "B.TIFF", "--json"}, o, error));
    EXPECT_EQ(o.kind, InputKind::kTiffList);
    EXPECT_EQ(o.inputs.size(), 2u);
    ASSERT_TRUE(parse({"demo", "--annotate", "out.y4m", "--log"}, o, error));
    EXPECT_EQ(o.kind, InputKind::kDemo);
    EXPECT_TRUE(o.inputs.empty());
    ASSERT_TRUE(parse({"--", "-odd-name.y4m"}, o, error));
    EXPECT_EQ(o.inputs[0], "-odd-name.y4m");
}

TEST(Options, CameraStateAndOrientation) {
    Options o;
    std::string error;
    ASSERT_TRUE(parse({"--orientation", "1", "--gain", "4.5", "--cct=3000", "x.y4m"}, o, error));
    EXPECT_EQ(o.orientation, 1);
    EXPECT_EQ(o.camera.gain, 4.5f);
    EXPECT_EQ(o.camera.color_temp, 3000);
    ASSERT_TRUE(parse({"x.y4m"}, o, error));
    EXPECT_EQ(o.camera.gain, 1.0f);  // unity gain, daylight by default
    EXPECT_EQ(o.camera.color_temp, 5000);
}

TEST(Options, BadCommandLinesSayWhatIsWrong) {
    EXPECT_NE(error_of({}).find("no input given"), std::string::npos);
    EXPECT_EQ(error_of({"--frobnicate", "x.y4m"}), "unknown option --frobnicate");
    EXPECT_EQ(error_of({"x.y4m", "--gain"}), "--gain needs a value");
    EXPECT_EQ(error_of({"--meta=", "x.y4m"}), "--meta needs a value");
    EXPECT_EQ(error_of({"--json=1", "x.y4m"}), "--json takes no value");
    EXPECT_NE(error_of({"--orientation", "2", "x.y4m"}).find("bad --orientation \"2\""),
              std::string::npos);
    for (const char* gain : {"0", "-1", "abc", "1e9", "inf"}) {
        EXPECT_NE(error_of({"--gain", gain, "x.y4m"}).find("bad --gain"), std::string::npos)
            << gain;
    }
    EXPECT_NE(error_of({"--cct", "warm", "x.y4m"}).find("bad --cct"), std::string::npos);
    EXPECT_NE(error_of({"--size", "640", "x.nv21"}).find("WIDTHxHEIGHT"), std::string::npos);
    EXPECT_NE(error_of({"--nv12", "x.y4m"}).find("--nv12 applies to raw input"), std::string::npos);
    EXPECT_NE(error_of({"--size", "64x48", "x.y4m"}).find("carries its own size"),
              std::string::npos);
    EXPECT_NE(error_of({"--size", "64x48", "a.tif"}).find("carry their own size"),
              std::string::npos);
    EXPECT_NE(error_of({"a.y4m", "b.y4m"}).find("one video input"), std::string::npos);
    EXPECT_NE(error_of({"a.tif", "b.y4m"}).find("one video input"), std::string::npos);
    EXPECT_NE(error_of({"demo", "x.y4m"}).find("demo takes no input"), std::string::npos);
    EXPECT_NE(error_of({"--annotate", "-", "x.y4m"}).find("needs a file name"), std::string::npos);
}
