#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "common/detector_fixture.h"
#include "common/log_capture.h"

namespace {

constexpr char kBanner[] = "Quillby FingerDetect Date:05/11/17, HAVE_DETECT_NUM 2 \n";

// Sets the logging property for the lifetime of the object.
class LogProperty {
public:
    explicit LogProperty(const char* value) { setenv("Molo_FingerDetection_enable_log", value, 1); }
    ~LogProperty() { unsetenv("Molo_FingerDetection_enable_log"); }
};

}  // namespace

TEST(Initialize, WorkingSizeIsAnEighthMadeEven) {
    struct Case {
        int width, height, down_width, down_height;
    };
    for (const Case& c : {Case{640, 480, 80, 60}, Case{1000, 720, 124, 90},
                          Case{1920, 1080, 240, 134}, Case{480, 640, 60, 80}}) {
        ScopedDetector d(ScopedDetector::Preview{c.width, c.height});
        EXPECT_EQ(d->down_width, c.down_width) << c.width << "x" << c.height;
        EXPECT_EQ(d->down_height, c.down_height) << c.width << "x" << c.height;
    }
}

TEST(Initialize, EveryFieldIsZeroBeforeInitialize) {
    alignas(Molo_FingerDetect) unsigned char storage[sizeof(Molo_FingerDetect)];
    std::memset(storage, 0xAB, sizeof storage);
    auto* d = new (storage) Molo_FingerDetect();
    EXPECT_EQ(d->down_y, nullptr);
    EXPECT_EQ(d->label_map, nullptr);
    EXPECT_EQ(d->hough_acc, nullptr);
    EXPECT_EQ(d->busy, 0);
    EXPECT_EQ(d->have_detect, 0);
    EXPECT_EQ(d->db_count, 0);
    EXPECT_EQ(d->log_enabled, 0);
    EXPECT_EQ(d->near_angles[30], 0);
    EXPECT_EQ(d->finger_db[4].kind, 0);
    EXPECT_EQ(d->scan_row_end, 0);
    // execute on a detector without planes does nothing.
    unsigned char byte = 0;
    EXPECT_EQ(d->execute(&byte, &byte, 0, true, 8, 1, 1.0f, 5000, nullptr, nullptr), 0);
    d->~Molo_FingerDetect();
}

TEST(Initialize, TablesAndCounters) {
    ScopedDetector d(80, 60);
    EXPECT_EQ(d->hough_diag, 100);
    EXPECT_EQ(d->hough_angles, 180);
    EXPECT_EQ(d->hough_rho_count, 200);
    EXPECT_EQ(d->hough_acc_size, 36000);
    EXPECT_EQ(d->sin_table[0], 0.0f);
    EXPECT_EQ(d->cos_table[0], 1.0f);
    EXPECT_EQ(d->sin_table[90], 1.0f);
    EXPECT_GT(d->sin_table[179], 0.0f);  // 179 steps: 180 degrees has no entry
    int sum = 0;
    for (int r = 0; r < 7; ++r) {
        for (int c = 0; c < 7; ++c) sum += d->blur_kernel[r][c];
    }
    EXPECT_EQ(d->blur_kernel_sum, sum);
    EXPECT_EQ(d->finger_db[0].ref_u, 146.89f);
    EXPECT_EQ(d->finger_db[3].kind, 4);
    EXPECT_EQ(d->finger_db[4].radius, 8.0f);
    EXPECT_EQ(d->frame_count, 0);
    EXPECT_EQ(d->have_detect, 0);
}

TEST(Initialize, SeedZonesOfASixtyRowGrid) {
    ScopedDetector d(80, 60);
    auto full = [&](int r, int c) { return d->seed_map_full[d.index(r, c)]; };
    auto band = [&](int r, int c) { return d->seed_map_band[d.index(r, c)]; };
    for (int r = 0; r < 60; ++r) {
        // Rows 10..14 and 45..49 lie between the corner squares and the middle band.
        const bool zone = r < 10 || r >= 50 || (r >= 15 && r < 45);
        for (int c = 0; c < 10; ++c) {
            EXPECT_EQ(full(r, c), 1) << r << "," << c;
            EXPECT_EQ(band(r, c), zone ? 1 : 0) << r << "," << c;
        }
        for (int c = 10; c < 70; ++c) {
            ASSERT_EQ(full(r, c), 0);
            ASSERT_EQ(band(r, c), 0);
        }
        for (int c = 70; c < 80; ++c) {
            EXPECT_EQ(full(r, c), zone ? 2 : 0) << r << "," << c;
            EXPECT_EQ(band(r, c), zone ? 2 : 0) << r << "," << c;
        }
    }
}

TEST(Initialize, NarrowGridStripsOverlapRightOverLeft) {
    ScopedDetector d(12, 60);  // strips: columns 0..9 and 2..11
    for (int c = 0; c < 12; ++c) {
        EXPECT_EQ(d->seed_map_full[d.index(0, c)], c < 2 ? 1 : 2);
        EXPECT_EQ(d->seed_map_full[d.index(12, c)], c < 10 ? 1 : 0);  // row 12: no right zone
        EXPECT_EQ(d->seed_map_band[d.index(12, c)], 0);
        EXPECT_EQ(d->seed_map_band[d.index(20, c)], c < 2 ? 1 : 2);
    }
    ScopedDetector tiny(4, 4);  // both strips cover the whole grid
    for (int i = 0; i < 16; ++i) EXPECT_EQ(tiny->seed_map_full[i], 2);
}

TEST(Initialize, PaddingBeyondThePlanesIsZero) {
    ScopedDetector d(80, 60);
    const int n = d.cells();
    EXPECT_EQ(d->down_y[n], 0);
    EXPECT_EQ(d->finger_mask[n], 0);
    for (int c = 0; c < 80; ++c) EXPECT_EQ(d->label_map[n + c], 0u);
}

TEST(Initialize, BannerAlwaysAndSymphonyNoteOnlyWithLogging) {
    {
        LogCapture log;
        ScopedDetector d(80, 60);
        EXPECT_EQ(d->log_enabled, 0);
        EXPECT_EQ(log.messages(), (std::vector<LoggedMessage>{{3, kBanner}}));
    }
    {
        LogProperty on("1");
        LogCapture log;
        ScopedDetector d(80, 60);
        EXPECT_EQ(d->log_enabled, 1);
        EXPECT_EQ(log.messages(),
                  (std::vector<LoggedMessage>{{3, kBanner}, {3, "No Symphony setting\n"}}));
    }
}

TEST(Initialize, UnusableSizesFailWithoutAllocating) {
    for (int size : {0, -64, 24, 16}) {
        Molo_FingerDetect d;
        EXPECT_EQ(d.Initialize(size, 480, nullptr), MOLO_INIT_BAD_SIZE) << size;
        EXPECT_EQ(d.Initialize(640, size, nullptr), MOLO_INIT_BAD_SIZE) << size;
        EXPECT_EQ(d.down_y, nullptr);
        EXPECT_EQ(d.down_width, 0);
    }
    Molo_FingerDetect huge;
    EXPECT_EQ(huge.Initialize(100000, 480, nullptr), MOLO_INIT_BAD_SIZE);
    ScopedDetector smallest(ScopedDetector::Preview{32, 32});
    EXPECT_EQ(smallest->down_width, 4);
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
