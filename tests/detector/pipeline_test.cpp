// The frame pipeline up to the candidate, driven through the C interface
// with diagnostic logging on: the rejections before the decision and their
// messages.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "common/log_capture.h"
#include "common/synthetic_frame.h"
#include "molo/c_api.h"
#include "molo/detector.h"

namespace {

// Chroma of entry 0's tone (matches entries 0 and 1), and a background far
// from every entry.
constexpr uint8_t kSkinFirst = 147, kSkinSecond = 117;
constexpr uint8_t kLuma = 120;

// A detector for one preview size, logging on, finalised with the test.
struct Logged {
    Logged(int width, int height) {
        setenv("Molo_FingerDetection_enable_log", "1", 1);
        d = static_cast<Molo_FingerDetect*>(
            MoloFinDetect_Initialize(nullptr, width, height, nullptr));
        unsetenv("Molo_FingerDetection_enable_log");
    }
    ~Logged() { MoloFinDetect_Finalize(d, nullptr, 0); }

    // Runs one frame and returns the messages it logged.
    std::vector<std::string> run(Nv21Frame& f, int orientation = 0) {
        LogCapture log;
        int row = 0, col = 0;
        MoloFinDetect_Execute(d, f.y_plane(), f.vu_plane(), orientation, f.stride, 1, 2.0f, 5000,
                              &row, &col);
        return log.texts();
    }
    Molo_FingerDetect* d;
};

Nv21Frame background(int width, int height) { return Nv21Frame(width, height, kLuma, 100, 160); }

}  // namespace

TEST(Pipeline, TooManySkinPixelsAndTooManyRegions) {
    Logged all_skin(640, 480);
    Nv21Frame skin(640, 480, kLuma, kSkinFirst, kSkinSecond);
    const auto messages = all_skin.run(skin);
    ASSERT_GE(messages.size(), 2u);
    EXPECT_EQ(messages[0], "0:too many finger pixel at all over area\n");
    EXPECT_EQ(messages[1], "1:too many finger pixel at all over area\n");
    // 2 x 2 skin blocks in a checkerboard along the left edge of a tall
    // frame: 320 separate regions touch the seed strip.
    Logged tall(480, 2048);
    Nv21Frame f = background(480, 2048);
    for (int br = 0; br < 128; ++br) {
        for (int bc = 0; bc < 5; ++bc) {
            if ((br + bc) % 2 == 0) f.set_pair(br, bc, kSkinFirst, kSkinSecond);
        }
    }
    EXPECT_EQ(tall.run(f).at(0), "0:too many skin tone area. it should not be a finger.\n");
    EXPECT_EQ(tall.d->have_detect, 0);
    EXPECT_EQ(tall.d->busy, 0);
}

TEST(Pipeline, EqualCandidatesGoToTheLowerLabel) {
    // Two like squares on the left edge, of one tone: the same mean colour
    // distance, so the upper one, labelled first, is the candidate. Entry 0
    // alone is tried, as before the warm-up.
    Logged t(640, 480);
    Nv21Frame f = background(640, 480);
    f.paint(16, 28, 0, 12, kLuma, kSkinFirst, kSkinSecond);
    f.paint(34, 46, 0, 12, kLuma, kSkinFirst, kSkinSecond);
    t.d->execute(f.y_plane(), f.vu_plane(), 0, true, f.stride, 1, 2.0f, 5000, nullptr, nullptr);
    EXPECT_EQ(t.d->box_top, 16);
    EXPECT_EQ(t.d->box_bottom, 27);
    EXPECT_EQ(t.d->min_area, 11);  // the least candidate: 0.23 % of the 4800 cells
}
