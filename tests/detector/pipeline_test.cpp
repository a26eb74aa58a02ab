// The frame pipeline up to the candidate, driven through the C interface
// with diagnostic logging on.
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
constexpr uint8_t kBackFirst = 100, kBackSecond = 160;
constexpr uint8_t kLuma = 120;

class Pipeline : public ::testing::Test {
protected:
    void SetUp() override { setenv("Molo_FingerDetection_enable_log", "1", 1); }
    void TearDown() override {
        for (void* h : handles_) MoloFinDetect_Finalize(h, nullptr, 0);
        unsetenv("Molo_FingerDetection_enable_log");
    }

    Molo_FingerDetect* detector(int width, int height) {
        void* h = MoloFinDetect_Initialize(nullptr, width, height, nullptr);
        handles_.push_back(h);
        return static_cast<Molo_FingerDetect*>(h);
    }

    // Runs one frame through the C interface and returns the messages it logged.
    static std::vector<std::string> run(Molo_FingerDetect* d, Nv21Frame& f, int orientation = 0,
                                        float gain = 2.0f, int kelvin = 5000) {
        LogCapture log;
        int row = 0, col = 0;
        MoloFinDetect_Execute(d, f.y_plane(), f.vu_plane(), orientation, f.stride, 1, gain, kelvin,
                              &row, &col);
        return log.texts();
    }

    static Nv21Frame background(int width, int height) {
        return Nv21Frame(width, height, kLuma, kBackFirst, kBackSecond);
    }

private:
    std::vector<void*> handles_;
};

const char kTooSmall[] = "area is too small or big eccentricity. max_area was:";

}  // namespace

TEST_F(Pipeline, TooManySkinPixels) {
    Molo_FingerDetect* d = detector(640, 480);
    Nv21Frame f(640, 480, kLuma, kSkinFirst, kSkinSecond);
    const auto messages = run(d, f);
    ASSERT_GE(messages.size(), 2u);
    EXPECT_EQ(messages[0], "0:too many finger pixel at all over area\n");
    EXPECT_EQ(messages[1], "1:too many finger pixel at all over area\n");
}

TEST_F(Pipeline, TooManyRegions) {
    // 2 x 2 skin blocks in a checkerboard along the left edge of a tall
    // frame: 320 separate regions touch the seed strip.
    Molo_FingerDetect* d = detector(480, 2048);
    Nv21Frame f = background(480, 2048);
    for (int br = 0; br < 128; ++br) {
        for (int bc = 0; bc < 5; ++bc) {
            if ((br + bc) % 2 == 0) f.set_pair(br, bc, kSkinFirst, kSkinSecond);
        }
    }
    const auto messages = run(d, f);
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages[0], "0:too many skin tone area. it should not be a finger.\n");
    EXPECT_EQ(d->have_detect, 0);
    EXPECT_EQ(d->busy, 0);
}

TEST_F(Pipeline, TooBigThenTooSmallAcrossTheColourEntries) {
    // A 30 x 30 compact square on the left edge: 900 cells, above 12 % of
    // the 80 x 60 grid. Entries 0 and 1 match it, 2 and 4 see no skin, and
    // entry 3 (kind 4) is excluded under light class 1.
    Molo_FingerDetect* d = detector(640, 480);
    Nv21Frame f = background(640, 480);
    f.paint(16, 46, 0, 30, kLuma, kSkinFirst, kSkinSecond);
    EXPECT_EQ(run(d, f), (std::vector<std::string>{
                             "0:area is too big.\n",
                             "1:area is too big.\n",
                             std::string("2:") + kTooSmall + "0\n",
                             std::string("4:") + kTooSmall + "0\n",
                         }));
    EXPECT_EQ(d->frame_count, 5);
    EXPECT_EQ(d->min_area, 11);
    EXPECT_EQ(d->max_area, 576);  // entry 4 is of kind 2
}

TEST_F(Pipeline, TooSmallReportsTheLargestGrownRegion) {
    Molo_FingerDetect* d = detector(640, 480);
    Nv21Frame f = background(640, 480);
    f.paint(20, 22, 0, 2, kLuma, kSkinFirst, kSkinSecond);    // 4 cells on the seed strip
    f.paint(40, 42, 0, 4, kLuma, kSkinFirst, kSkinSecond);    // 8 cells, still below 11
    f.paint(30, 50, 40, 60, kLuma, kSkinFirst, kSkinSecond);  // large, but no seed reaches it
    const auto messages = run(d, f);
    ASSERT_GE(messages.size(), 2u);
    EXPECT_EQ(messages[0], std::string("0:") + kTooSmall + "8\n");
}

TEST_F(Pipeline, RegionsGrowOnlyFromTheEntrySide) {
    // The same square on the right edge is grown with orientation 1 only.
    Molo_FingerDetect* d = detector(640, 480);
    Nv21Frame f = background(640, 480);
    f.paint(16, 46, 50, 80, kLuma, kSkinFirst, kSkinSecond);
    EXPECT_EQ(run(d, f, 0)[0], std::string("0:") + kTooSmall + "0\n");
    EXPECT_EQ(run(d, f, 1)[0], "0:area is too big.\n");
}
