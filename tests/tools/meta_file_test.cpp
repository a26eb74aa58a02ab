#include "meta_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using fingerdetect::CameraState;
using fingerdetect::MetaTrack;

namespace {

const CameraState kFallback{1.5f, 6000};

// Reads text as a meta file through frames 0, 1, ... last: the colour
// temperature of each frame asked for in `asked`, or the refusal.
std::string read_through(std::string text, long last, const std::vector<long>& asked = {}) {
    MetaTrack track;
    std::string error, temps;
    if (!track.open(fmemopen(&text[0], text.size(), "r"), "m.csv", true, error)) return error;
    for (long frame = 0; frame <= last; ++frame) {
        CameraState state;
        if (!track.at(frame, kFallback, state, error)) return error;
        for (long a : asked) {
            if (a == frame) temps += std::to_string(state.color_temp) + " ";
        }
    }
    return temps;
}

}  // namespace

TEST(MetaFile, EachRowHoldsUntilTheNextOne) {
    // Before the first row the fallback; fractions of a kelvin rounded.
    EXPECT_EQ(read_through("frame,gain,cct\r\n# warm-up\n\n3, 2.5, 4000\n10,1.0,5200.4\n", 1000,
                           {0, 3, 9, 10, 1000}),
              "6000 4000 4000 5200 5200 ");
}

// A first row is skipped only when it holds no number at all; a byte-order
// mark is not part of the first field. Errors name the line and the field.
TEST(MetaFile, HeaderRowsAndErrors) {
    const std::string bom = "\xEF\xBB\xBF";
    const struct {
        std::string text;
        std::string result;
    } cases[] = {
        {bom + "0,2.0,4000\n", "4000 "},
        {bom + "frame,gain,cct\n0,2,4000\n", "4000 "},
        {"0,1,5000\nframe,gain,cct\n", "m.csv:2: bad frame number \"frame\""},
        {"0,1.0\n", "m.csv:1: expected 3 fields (frame, gain, colour temperature), found 2"},
        {"0,1e-50,5000\n", "m.csv:1: bad gain \"1e-50\" (a number above 0)"},  // 0 as a float
        {"0,1,500\n", "m.csv:1: bad colour temperature \"500\" (kelvin, 1000 to 40000)"},
        {"4,1,5000\n4,1,5000\n",
         "m.csv:2: frame 4 does not follow frame 4 (rows must be in increasing frame order)"},
        {"frame,gain,cct\n", "m.csv: no rows (expected lines of frame, gain, colour temperature)"},
        {"0,1,5000\n" + std::string(2000, '1') + "\n", "m.csv:2: line longer than 1024 bytes"},
    };
    for (const auto& c : cases) EXPECT_EQ(read_through(c.text, 100, {0}), c.result) << c.text;
    // Rows are read as the frames reach them, one row ahead.
    EXPECT_EQ(read_through("0,1,5000\n5,2,5000\n9,x,5000\n", 4), "");
    EXPECT_EQ(read_through("0,1,5000\n5,2,5000\n9,x,5000\n", 5),
              "m.csv:3: bad gain \"x\" (a number above 0)");
}
