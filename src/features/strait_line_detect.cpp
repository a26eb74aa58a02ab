// Straight-edge measure of the candidate's outline: walks the finger mask by
// rows (direction 0) or by columns (direction 1) and records the two longest
// runs of outline pixels whose 5 x 5 gradient direction stays within
// `tolerance` degrees of the direction at the start of the run.
#include <cstdlib>

#include "molo/detector.h"
#include "support/log.h"

namespace {

// The axis directions weigh double, favouring horizontal and vertical edges.
// 90 and 180 do not come out of the 5 x 5 operator on byte planes but stay in
// the set.
bool axis_direction(int angle) { return angle == 180 || angle == -90 || angle == 0 || angle == 90; }

}  // namespace

void Molo_FingerDetect::StraitLineDetect(int tolerance, int direction) {
    straight_run_best = 0;
    straight_run_second = 0;
    edge_count = 0;
    if (direction != 0 && direction != 1) {
        molo::log_print(molo::kLogError, "error at StraitLineDetect\n");
        return;
    }

    // Both carry over from one line of the walk to the next. No direction
    // lies within 910 of the starting 1000, so the first outline pixel always
    // closes the empty initial run.
    int run_angle = 1000;
    int run = 0;
    auto visit = [&](int row, int col) {
        if (finger_mask[static_cast<long>(row) * down_width + col] != 1) return;
        int magnitude = 0;
        Sobel3(finger_mask, row, col, down_width, down_height, &magnitude);
        if (magnitude <= 0) return;
        ++edge_count;
        int vertical = 0;
        int horizontal = 0;
        int reserved = 0;
        int angle = 0;
        Sobel5(finger_mask, row, col, down_width, &vertical, &horizontal, &reserved, &angle);
        if (std::abs(run_angle - angle) <= tolerance) {
            run += axis_direction(angle) ? 2 : 1;
            return;
        }
        run_angle = angle;
        if (run > straight_run_best) {
            straight_run_second = straight_run_best;
            straight_run_best = run;
        } else if (run > straight_run_second) {
            straight_run_second = run;
        }
        run = 1;
    };

    // The walk stays 2 inside the grid for the 5 x 5 operator; its ends are
    // the corner stage's differentiated area. The run still open at the end
    // is not counted.
    if (direction == 0) {
        for (int row = 2; row < scan_row_end; ++row) {
            for (int col = 2; col < scan_col_end; ++col) visit(row, col);
        }
    } else {
        for (int col = 2; col < scan_col_end; ++col) {
            for (int row = 2; row < scan_row_end; ++row) visit(row, col);
        }
    }
}
