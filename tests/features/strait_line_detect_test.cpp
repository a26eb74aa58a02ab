#include <gtest/gtest.h>

#include "common/log_capture.h"
#include "common/region_grid.h"

TEST(StraitLineDetect, RunsAlongTheSidesOfARectangle) {
    // Rows 10..29 x columns 10..39; the walk ends before column 39, so the
    // right side is left out and 76 outline cells remain. The 5 x 5 direction
    // is 0 on 26 cells of the top and of the bottom side and -81 on 16 of the
    // left side. A run restarts at 1 and grows by 2 on axis directions, by 1
    // on others.
    ScopedDetector d(80, 60);
    draw(d, d->finger_mask, [](int r, int c) { return in_rect(r, c, 10, 10, 29, 39); });
    d->scan_row_end = 40, d->scan_col_end = 39;
    auto walk = [&](int tolerance, int direction) {
        d->StraitLineDetect(tolerance, direction);
        return std::vector<int>{d->straight_run_best, d->straight_run_second, d->edge_count};
    };
    // By rows: top and bottom sides, 1 + 25 * 2 each.
    EXPECT_EQ(walk(0, 0), (std::vector<int>{51, 51, 76}));
    // By columns: top and bottom cells join into 1 + 51 * 2; the left side
    // gives 16.
    EXPECT_EQ(walk(0, 1), (std::vector<int>{103, 16, 76}));
    // An unknown direction clears the figures and is logged even with
    // logging off.
    ASSERT_EQ(d->log_enabled, 0);
    LogCapture log;
    EXPECT_EQ(walk(0, 2), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(log.messages(), (std::vector<LoggedMessage>{{6, "error at StraitLineDetect\n"}}));
}
