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

}  // namespace

TEST(Options, InputsAreSortedIntoOneKindWithTheirSettings) {
    Options o;
    std::string error;
    ASSERT_TRUE(parse({"-"}, o, error));
    EXPECT_EQ(o.kind, InputKind::kY4m);
    EXPECT_EQ(o.camera.gain, 1.0f);  // unity gain, daylight by default
    EXPECT_EQ(o.camera.color_temp, 5000);
    ASSERT_TRUE(parse({"--size=640x480", "--nv12", "--orientation", "1", "--gain", "4.5",
                       "--cct=3000", "clip.yuv"},
                      o, error))
        << error;
    EXPECT_EQ(o.kind, InputKind::kRaw);
    EXPECT_TRUE(o.nv12);
    EXPECT_EQ(o.height, 480);
    EXPECT_EQ(o.orientation, 1);
    EXPECT_EQ(o.camera.gain, 4.5f);
    EXPECT_EQ(o.camera.color_temp, 3000);
    ASSERT_TRUE(parse({"a.tif", "B.TIFF", "--json"}, o, error));
    EXPECT_EQ(o.kind, InputKind::kTiffList);
    EXPECT_EQ(o.inputs.size(), 2u);
    ASSERT_TRUE(parse({"--", "-odd-name.y4m"}, o, error));
    EXPECT_EQ(o.inputs[0], "-odd-name.y4m");
}

TEST(Options, BadCommandLinesSayWhatIsWrong) {
    const struct {
        std::vector<const char*> args;
        const char* error;  // a part of the message
    } cases[] = {
        {{}, "no input given"},
        {{"x.y4m", "--gain"}, "--gain needs a value"},
        {{"--json=1", "x.y4m"}, "--json takes no value"},
        {{"--orientation", "2", "x.y4m"}, "bad --orientation \"2\""},
        {{"--gain", "1e9", "x.y4m"}, "bad --gain"},
        {{"--cct", "warm", "x.y4m"}, "bad --cct"},
        {{"--size", "640X480", "x.nv21"}, "WIDTHxHEIGHT"},
        {{"--nv12", "x.y4m"}, "--nv12 applies to raw input"},
        {{"--size", "64x48", "x.y4m"}, "carries its own size"},
        {{"a.tif", "b.y4m"}, "one video input"},
        {{"demo", "x.y4m"}, "demo takes no input"},
        {{"--annotate", "-", "x.y4m"}, "needs a file name"},
    };
    for (const auto& c : cases) {
        Options o;
        std::string error;
        EXPECT_FALSE(parse(c.args, o, error)) << c.error;
        EXPECT_NE(error.find(c.error), std::string::npos) << error;
    }
}
