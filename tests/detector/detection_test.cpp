// End to end: synthetic clips through the C interface, as a camera client
// drives the detector.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "common/log_capture.h"
#include "common/synthetic_frame.h"
#include "molo/c_api.h"
#include "molo/detector.h"
#include "prep/parallel_rows.h"

namespace {

constexpr int kWidth = 640, kHeight = 480;  // working grid 80 x 60

// A neutral scene, optionally with a finger entering from one side.
Nv21Frame scene(int side = -1, int radius = 15, int width = kWidth, int height = kHeight) {
    Nv21Frame f(width, height, 120, 100, 160);
    if (side >= 0) f.paint_half_disc(side, radius);
    return f;
}

struct FrameResult {
    int result;
    int row;
    int col;
    bool operator==(const FrameResult& o) const {
        return result == o.result && row == o.row && col == o.col;
    }
};

struct ClipRun {
    std::vector<FrameResult> results;
    std::vector<std::string> messages;
    std::vector<unsigned int> planes;  // skin mask and label map after each frame
};

class Detection : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("Molo_FingerDetection_enable_log", "1", 1);
        handle_ = MoloFinDetect_Initialize(nullptr, kWidth, kHeight, nullptr);
    }
    void TearDown() override {
        MoloFinDetect_Finalize(handle_, nullptr, 0);
        unsetenv("Molo_FingerDetection_enable_log");
        molo::set_execution_contexts(0);
    }
    Molo_FingerDetect* d() const { return static_cast<Molo_FingerDetect*>(handle_); }

    FrameResult feed(Nv21Frame& f, int orientation) {
        FrameResult r{0, -1, -1};
        r.result = MoloFinDetect_Execute(handle_, f.y_plane(), f.vu_plane(), orientation, f.stride,
                                         1, 2.0f, 5000, &r.row, &r.col);
        return r;
    }

    void* handle_ = nullptr;
};

}  // namespace

TEST_F(Detection, FingerFromEitherEdgeIsReportedOnTheSecondFrame) {
    for (int side : {0, 1}) {
        SCOPED_TRACE(side == 0 ? "left edge" : "right edge");
        Nv21Frame finger = scene(side);
        const FrameResult first = feed(finger, side);
        EXPECT_EQ(first.result, 0);
        EXPECT_EQ(first.row, -1);  // outputs untouched without a report
        EXPECT_EQ(d()->have_detect, 1);
        EXPECT_EQ(d()->db_index, 0);  // the warm-up loop stopped at the first match
        const FrameResult second = feed(finger, side);
        ASSERT_EQ(second.result, 1);
        EXPECT_EQ(d()->have_detect, 2);
        EXPECT_EQ(d()->finger_found, 1);
        EXPECT_EQ(second.row % 8, 0);
        EXPECT_EQ(second.col % 8, 0);
        // Inside the half disc, in full-frame pixels.
        const int cell_row = second.row / 8;
        const int cell_col = second.col / 8;
        EXPECT_EQ(d()->label_map[cell_row * 80 + cell_col] != 0, true);
        EXPECT_EQ(d()->finger_mask[cell_row * 80 + cell_col], 1);
        EXPECT_NEAR(cell_row, 29.5, 1.0);
        EXPECT_EQ(side == 0 ? cell_col < 15 : cell_col >= 65, true) << cell_col;
        // A confirmed finger keeps being reported.
        EXPECT_EQ(feed(finger, side), second);
        EXPECT_EQ(d()->have_detect, 3);
        // The finger leaves: the count drops back.
        Nv21Frame empty = scene();
        EXPECT_EQ(feed(empty, side).result, 0);
        EXPECT_EQ(d()->have_detect, 0);
    }
}

TEST_F(Detection, ARejectionBetweenPassingFramesRestartsTheCount) {
    Nv21Frame finger = scene(0);
    Nv21Frame empty = scene();
    LogCapture log;
    EXPECT_EQ(feed(finger, 0).result, 0);
    EXPECT_EQ(feed(empty, 0).result, 0);
    EXPECT_EQ(d()->have_detect, 0);
    EXPECT_EQ(feed(finger, 0).result, 0);
    EXPECT_EQ(feed(finger, 0).result, 1);
    const auto texts = log.texts();
    EXPECT_EQ(texts.front(), "0: have_detect:1\n");
    EXPECT_EQ(texts.back(), "0: position(232,40), UV(147.00, 117.00)"
                            "-------------------------------------------\n");
    EXPECT_EQ(d()->found_u, 147.0f);
    EXPECT_EQ(d()->found_v, 117.0f);
    EXPECT_GT(d()->detect_time, 0);
}

TEST_F(Detection, SerialAndParallelClipsAgree) {
    // A 1080p clip mixing passes, reports, rejections and both sides, run
    // once serially and once over four execution contexts: same results,
    // messages, skin masks and label maps. Luma carries a fixed texture so
    // the row loops have something to disagree about.
    Nv21Frame left = scene(0, 30, 1920, 1080);
    Nv21Frame right = scene(1, 24, 1920, 1080);
    Nv21Frame empty = scene(-1, 0, 1920, 1080);
    for (Nv21Frame* f : {&left, &right, &empty}) {
        for (size_t i = 0; i < f->y.size(); ++i) f->y[i] = static_cast<uint8_t>(f->y[i] + (i * 7 % 5));
    }
    const std::vector<std::pair<Nv21Frame*, int>> clip = {
        {&left, 0}, {&left, 0}, {&left, 0}, {&right, 0}, {&right, 1},
        {&right, 1}, {&empty, 1}, {&left, 0}, {&left, 0}};
    auto run_clip = [&](int contexts) {
        molo::set_execution_contexts(contexts);
        void* h = MoloFinDetect_Initialize(nullptr, 1920, 1080, nullptr);
        const auto* d = static_cast<Molo_FingerDetect*>(h);
        const int n = d->down_width * d->down_height;
        LogCapture log;
        ClipRun run;
        for (const auto& [frame, orientation] : clip) {
            FrameResult r{0, -1, -1};
            r.result = MoloFinDetect_Execute(h, frame->y_plane(), frame->vu_plane(), orientation,
                                             1920, 1, 2.0f, 5000, &r.row, &r.col);
            run.results.push_back(r);
            run.planes.insert(run.planes.end(), d->skin_mask, d->skin_mask + n);
            run.planes.insert(run.planes.end(), d->label_map, d->label_map + n);
        }
        MoloFinDetect_Finalize(h, nullptr, 0);
        run.messages = log.texts();
        return run;
    };
    const ClipRun serial = run_clip(1);
    const ClipRun parallel = run_clip(4);
    EXPECT_EQ(serial.results, parallel.results);
    EXPECT_EQ(serial.messages, parallel.messages);
    EXPECT_TRUE(serial.planes == parallel.planes);
    // The clip reports on frames 1, 2, 5 and 8 and rejects in between.
    const std::vector<int> reported = {0, 1, 1, 0, 0, 1, 0, 0, 1};
    for (size_t i = 0; i < clip.size(); ++i) EXPECT_EQ(serial.results[i].result, reported[i]) << i;
}
