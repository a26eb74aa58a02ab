#include <gtest/gtest.h>

#include <vector>

#include "common/log_capture.h"
#include "features/outline_scene.h"

TEST(StraitLineDetect, UnknownDirectionIsAlwaysLogged) {
    ScopedDetector d(80, 60);
    ASSERT_EQ(d->log_enabled, 0);
    d->straight_run_best = d->straight_run_second = d->edge_count = 5;
    LogCapture log;
    d->StraitLineDetect(0, 2);
    EXPECT_EQ(log.messages(), (std::vector<LoggedMessage>{{6, "error at StraitLineDetect\n"}}));
    EXPECT_EQ(d->straight_run_best + d->straight_run_second + d->edge_count, 0);
}

TEST(StraitLineDetect, RunsAlongTheSidesOfARectangle) {
    // Rows 10..29 x columns 10..39, 96 outline cells. The 5 x 5 direction is 0
    // on 26 cells of the top and of the bottom side, -81 on 16 of the left
    // side and -90 on 16 of the right side (the vertical kernel is not
    // symmetric). A run restarts at 1 and grows by 2 on axis directions.
    ScopedDetector d(80, 60);
    paint_region(d, [](int r, int c) { return in_rect(r, c, 10, 10, 29, 39); });
    d->scan_row_end = 40;
    d->scan_col_end = 50;
    auto walk = [&](int tolerance, int direction) {
        d->StraitLineDetect(tolerance, direction);
        EXPECT_EQ(d->edge_count, 96);
        return std::vector<int>{d->straight_run_best, d->straight_run_second};
    };
    // By rows: top and bottom sides, 1 + 25 * 2 each.
    EXPECT_EQ(walk(0, 0), (std::vector<int>{51, 51}));
    // By columns: top and bottom cells join into 1 + 51 * 2; the right side
    // gives 1 + 15 * 2, the left side only 16.
    EXPECT_EQ(walk(0, 1), (std::vector<int>{103, 31}));
    // The first cell closes the empty run that starts at 1000 even with a
    // tolerance of 910; everything after it is one run, still open at the
    // end and never counted.
    EXPECT_EQ(walk(910, 0), (std::vector<int>{0, 0}));
}
