// The verdict of the corner-and-line check, drawn from the strongest corner
// response and the two Hough lines of the candidate's outline. Kept apart
// from the measuring so that its thresholds can be exercised directly.
#ifndef MOLO_FEATURES_CORNER_LINE_VERDICT_H
#define MOLO_FEATURES_CORNER_LINE_VERDICT_H

#include <cmath>
#include <cstdlib>

namespace molo {

struct CornerLineFigures {
    int corner;              // strongest corner response
    int hough_score;         // straightness score times 10^7
    float line_dist_sum;     // main line: distance sum of its on-line pixels
    int line_longest_run;    // main line: longest on-line run
    int second_longest_run;  // second line: longest on-line run
    int second_votes;        // votes of the second line
    int edge_count;          // outline pixels
    int peak_angle;          // angle index of the main line
    int second_angle;        // angle index of the second line
    int corner_row;          // position of the strongest corner
    int corner_col;
    int grid_width;
    int grid_height;
};

// Where the two lines cross, and that point's distance from the corner
// (100 when it was not measured). Fields the verdict does not reach keep
// their values.
struct CornerLinePlacement {
    int cross_row;
    int cross_col;
    float corner_line_dist;
};

namespace verdict_detail {

// Corners below 10^7 pass under a straight-line budget that shrinks as the
// corner grows; corners in the band 10^7 .. 99999999 pass only with nearly
// no straightness; stronger corners never pass.
inline bool corner_within_budget(int corner, int hough_score) {
    if (corner < 10000000) {
        return static_cast<double>(hough_score) <= 7000000.0 - 0.63 * static_cast<double>(corner);
    }
    return corner >= 10000000 && corner <= 99999999 && hough_score <= 700000;
}

}  // namespace verdict_detail

// True when the candidate passes. `find_crossing(placement)` is called only
// when the second line is strong enough (more than a tenth of the outline's
// votes, the quotient formed in float and compared in double) and the corner
// is above 10^6; it stores in cross_row and cross_col the pixel closest to
// both lines, or leaves them at 0.
template <typename FindCrossing>
bool corner_line_verdict(const CornerLineFigures& f, CornerLinePlacement& out,
                         FindCrossing&& find_crossing) {
    int corner = f.corner;
    bool second_line = true;
    if (corner <= 10000000) {
        out.cross_row = 0;
        out.cross_col = 0;
        second_line = corner > 1000000;
    } else {
        // A strong corner on a line with off-line scatter and a long run
        // fails. On-line distances are always 0, so this never fires; the
        // test is kept as it stands (pinned by
        // CornerLineVerdict.BranchesAtTheirBoundaries).
        if (f.line_dist_sum >
                static_cast<float>(f.grid_width) * 0.000463f * static_cast<float>(f.grid_height) &&
            static_cast<float>(f.line_longest_run) >
                static_cast<float>(f.grid_height * f.grid_width) * 0.0007f) {
            return false;
        }
        out.cross_row = 0;
        out.cross_col = 0;
    }

    if (second_line) {
        const float ratio = static_cast<float>(f.second_votes) / static_cast<float>(f.edge_count);
        if (static_cast<double>(ratio) > 0.1) {
            find_crossing(out);
            const int dr = out.cross_row - f.corner_row;
            const int dc = out.cross_col - f.corner_col;
            const float dist =
                static_cast<float>(std::sqrt(static_cast<double>(dr * dr + dc * dc)));
            out.corner_line_dist = dist;
            // Two long lines roughly at right angles meeting at a strong
            // corner: the outline of a man-made object, not a finger.
            const int gap = std::abs(f.peak_angle - f.second_angle);
            if (gap >= 61 && gap <= 119 && corner > 10000000 && dist < 4.5f) {
                const double least = static_cast<double>(f.grid_width) * 0.0002315 *
                                     static_cast<double>(f.grid_height);
                if (f.line_longest_run > least && f.second_longest_run > least) return false;
                return corner >= 10000000 && corner <= 99999999 && f.hough_score <= 700000;
            }
            // A corner at the crossing is judged at full strength; one away
            // from it counts half.
            if (dist < 4.5f) return verdict_detail::corner_within_budget(corner, f.hough_score);
            return verdict_detail::corner_within_budget(corner / 2, f.hough_score);
        }
    }
    out.corner_line_dist = 100.0f;
    return verdict_detail::corner_within_budget(corner / 2, f.hough_score);
}

}  // namespace molo

#endif  // MOLO_FEATURES_CORNER_LINE_VERDICT_H
