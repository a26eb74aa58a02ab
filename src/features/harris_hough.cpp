// Corner-and-line check of the chosen candidate: a finger's outline is
// rounded, so strong corners combined with long straight lines mark an
// object that is not a finger. The holes of the region are filled, its
// outline traced, its straightness scored with the Hough accumulator and its
// sharpest corner found with the Harris map; the verdict combines the two.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "features/corner_line_verdict.h"
#include "features/line_crossing.h"
#include "molo/detector.h"
#include "support/float_to_int.h"

bool Molo_FingerDetect::HarrisHough() {
    FillInGap();

    const int w = down_width;
    const int h = down_height;
    // The box is kept off the first row and column. A box that collapses to
    // one row or one column is rejected before the outline is traced, so
    // edge_map keeps its contents; one that collapses further (a region on
    // row 0 or column 0 alone, whose first row or column passes its last) is
    // not rejected and goes on with an empty outline.
    const int r0 = std::max(box_top, 1);
    const int r1 = std::min(box_bottom, h - 1);
    const int c0 = std::max(box_left, 1);
    const int c1 = std::min(box_right, w - 1);
    if (r0 == r1 || c0 == c1) return false;

    // Outline: region pixels with a non-zero 3 x 3 gradient of the mask.
    std::memset(edge_map, 0, static_cast<size_t>(w) * static_cast<size_t>(h));
    edge_count = 0;
    for (int row = r0; row <= r1; ++row) {
        for (int col = c0; col <= c1; ++col) {
            const size_t i = static_cast<size_t>(row) * w + col;
            if (finger_mask[i] != 1) continue;
            int magnitude = 0;
            Sobel3(finger_mask, row, col, w, h, &magnitude);
            if (magnitude > 0) {
                edge_map[i] = 1;
                ++edge_count;
            }
        }
    }

    const double score = HoughLine();
    const int corner = HarrisCorner();
    // An empty outline scores NaN, which counts as no straightness at all.
    const int hough_score = molo::to_int_sat(score * 10000000.0);

    const molo::CornerLineFigures figures{
        corner,     hough_score, line_dist_sum, line_longest_run, second_longest_run, second_votes,
        edge_count, peak_angle,  second_angle,  corner_row,       corner_col,         w,
        h};
    molo::CornerLinePlacement placement{cross_row, cross_col, corner_line_dist};

    // The pixel of the whole grid closest to both lines, measured in whole
    // rho steps; the first one met wins ties.
    auto find_crossing = [this, w, h](molo::CornerLinePlacement& p) {
        molo::find_line_crossing({cos_table[peak_angle], sin_table[peak_angle], peak_rho},
                                 {cos_table[second_angle], sin_table[second_angle], second_rho},
                                 hough_diag, h, w, &p.cross_row, &p.cross_col);
    };

    const bool pass = molo::corner_line_verdict(figures, placement, find_crossing);
    cross_row = placement.cross_row;
    cross_col = placement.cross_col;
    corner_line_dist = placement.corner_line_dist;
    return pass;
}
