#include <gtest/gtest.h>

#include <cstdlib>

#include "common/detector_fixture.h"
#include "common/log_capture.h"

TEST(Initialize, WorkingSizeIsAnEighthMadeEvenNegativeCountsAsZeroAbsurdIsRefused) {
    struct Case {
        int width, height, stored_width, stored_height, down_width, down_height;
    };
    for (const Case& c : {Case{640, 480, 640, 480, 80, 60}, Case{1000, 720, 1000, 720, 124, 90},
                          Case{1920, 1080, 1920, 1080, 240, 134}, Case{15, 15, 15, 15, 0, 0},
                          Case{16, 16, 16, 16, 2, 2}, Case{176, 144, 176, 144, 22, 18},
                          Case{-5, 480, 0, 480, 0, 60}, Case{640, -1, 640, 0, 80, 0},
                          Case{16384, 16, 16384, 16, 2048, 2}}) {
        Molo_FingerDetect d;
        EXPECT_EQ(d.Initialize(c.width, c.height, nullptr), MOLO_INIT_OK)
            << c.width << "x" << c.height;
        EXPECT_EQ(d.width, c.stored_width);
        EXPECT_EQ(d.height, c.stored_height);
        EXPECT_EQ(d.down_width, c.down_width) << c.width << "x" << c.height;
        EXPECT_EQ(d.down_height, c.down_height) << c.width << "x" << c.height;
        EXPECT_NE(d.down_y, nullptr);
        d.Finalize(nullptr, 0);
    }
    Molo_FingerDetect huge;
    EXPECT_EQ(huge.Initialize(16385, 480, nullptr), MOLO_INIT_BAD_SIZE);
    EXPECT_EQ(huge.down_y, nullptr);
}

TEST(Initialize, TablesPaddingBannerAndLoggingProperty) {
    LogCapture log;
    {
        ScopedDetector d(80, 60);
        // The padding read by the 3 x 3 gradient and the perimeter count is zero.
        EXPECT_EQ(d->down_y[d.cells()], 0);
        EXPECT_EQ(d->finger_mask[d.cells()], 0);
        for (int c = 0; c < 80; ++c) EXPECT_EQ(d->label_map[d.cells() + c], 0u);
        EXPECT_EQ(d->log_enabled, 0);
        // The angle step comes from 3.141592f, a little below pi, so the
        // cosine at 90 degrees is a small positive number (a closer pi gives
        // about -4e-8).
        EXPECT_GT(d->cos_table[90], 2e-7f);
        EXPECT_LT(d->cos_table[90], 4e-7f);
    }
    setenv("Molo_FingerDetection_enable_log", "1", 1);
    ScopedDetector logged(80, 60);
    unsetenv("Molo_FingerDetection_enable_log");
    EXPECT_EQ(logged->log_enabled, 1);
    const LoggedMessage banner{3, "Quillby FingerDetect Date:05/11/17, HAVE_DETECT_NUM 2 \n"};
    EXPECT_EQ(log.messages(),
              (std::vector<LoggedMessage>{banner, banner, {3, "No Symphony setting\n"}}));
}

TEST(Initialize, SeedZonesOfASixtyRowGrid) {
    ScopedDetector d(80, 60);
    for (int r = 0; r < 60; ++r) {
        // Rows 10..14 and 45..49 lie between the corner squares and the middle band.
        const bool zone = r < 10 || r >= 50 || (r >= 15 && r < 45);
        for (int c = 0; c < 80; ++c) {
            const int strip = c < 10 ? 1 : c >= 70 ? 2 : 0;
            const int full = strip == 1 ? 1 : (zone ? strip : 0);
            ASSERT_EQ(d->seed_map_full[d.index(r, c)], full) << r << "," << c;
            ASSERT_EQ(d->seed_map_band[d.index(r, c)], zone ? strip : 0) << r << "," << c;
        }
    }
}

TEST(Finalize, ReleasesOnceEvenWhenRepeated) {
    Molo_FingerDetect d;
    ASSERT_EQ(d.Initialize(640, 480, nullptr), 0);
    d.busy = 1;
    d.Finalize(nullptr, 1);
    EXPECT_EQ(d.busy, 0);
    EXPECT_EQ(d.down_y, nullptr);
    d.Finalize(nullptr, 0);  // nothing left to release
}
