// Hough line accumulator over the candidate's outline: how much of the
// outline is one straight line. Every outline pixel in the bounding box votes
// for the 180 lines through it; the strongest line and the strongest line
// clear of its angular neighbourhood are measured for their longest on-line
// run, and the shape of the vote profile around the strongest angle gives
// the straightness score.
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "features/hough_rho.h"
#include "molo/detector.h"
#include "support/float_to_int.h"

namespace {

// Angles on either side of the strongest one that form its neighbourhood.
constexpr int kNearHalf = 15;
constexpr int kNearCount = 2 * kNearHalf + 1;

struct RunFigures {
    int run;
    int longest;
    float dist_sum;
};

// Walks the box in row-major order and measures the longest run of outline
// pixels lying on the line (angle, rho). The distance is truncated before the
// test, so a pixel within less than one rho step counts as on the line, and
// on-line distances are therefore always 0. Pixels off the outline neither
// extend nor break a run; a run carries over from one row to the next.
RunFigures measure_run(const Molo_FingerDetect& d, int angle, int rho) {
    RunFigures f{0, 0, 0.0f};
    const float target = static_cast<float>(rho);
    for (int row = d.box_top; row <= d.box_bottom; ++row) {
        const unsigned char* line = d.edge_map + static_cast<size_t>(row) * d.down_width;
        for (int col = d.box_left; col <= d.box_right; ++col) {
            if (line[col] != 1) continue;
            const int dist =
                std::abs(molo::to_int_sat(target - molo::rho_position(d, row, col, angle)));
            if (dist < 1) {
                ++f.run;
                f.dist_sum += static_cast<float>(dist);
            } else {
                if (f.run > f.longest) f.longest = f.run;
                f.run = 0;
            }
        }
    }
    if (f.run > f.longest) f.longest = f.run;
    return f;
}

}  // namespace

double Molo_FingerDetect::HoughLine() {
    const int angles = hough_angles;
    // The accumulator is all 0 but for the rho rows of the previous vote
    // (the spare row after the last one included, which the nearest rho index
    // can reach on some grids and no scan reads): clearing those rows clears
    // it. The library is its only writer.
    if (hough_voted_rows > 0) {
        std::memset(
            hough_acc + static_cast<size_t>(hough_voted_low) * angles, 0,
            static_cast<size_t>(hough_voted_rows) * static_cast<size_t>(angles) * sizeof(int));
    }

    // The rho rows that received votes; every other row stays 0. The rho
    // indices of one pixel are formed for all angles in one loop the compiler
    // vectorizes; they lie within the accumulator, so the conversion needs no
    // saturation.
    int voted_low = hough_rho_count;
    int voted_high = -1;
    int index[molo::kHoughAngles];
    for (int row = box_top; row <= box_bottom; ++row) {
        const unsigned char* line = edge_map + static_cast<size_t>(row) * down_width;
        for (int col = box_left; col <= box_right; ++col) {
            if (line[col] != 1) continue;
            const float fr = static_cast<float>(row);
            const float fc = static_cast<float>(col);
            const float centre = static_cast<float>(hough_diag);
            int low = voted_low;
            int high = voted_high;
            for (int a = 0; a < molo::kHoughAngles; ++a) {
                const float along = cos_table[a] * fr + sin_table[a] * fc;
                const int r = static_cast<int>((along + centre) + 0.5f);
                index[a] = r;
                low = r < low ? r : low;
                high = r > high ? r : high;
            }
            voted_low = low;
            voted_high = high;
            for (int a = 0; a < molo::kHoughAngles; ++a) {
                ++hough_acc[static_cast<size_t>(index[a]) * angles + a];
            }
        }
    }
    hough_voted_low = voted_high >= voted_low ? voted_low : 0;
    hough_voted_rows = voted_high >= voted_low ? voted_high - voted_low + 1 : 0;

    // One pass over the accumulator, rho outer and angle inner, finds the
    // strongest cell (the first one met on ties) and, per angle, the most
    // votes and the first rho that has them. The per-angle figures give the
    // vote profile and the second line without scanning the accumulator by
    // columns: for each angle, the first rho with the column's most votes is
    // the cell a rho-inner scan would settle on. Rows without votes hold only
    // zeros, which never replace a maximum that starts at 0, so the scan
    // covers the voted rows alone.
    int column_most[molo::kHoughAngles] = {};
    int column_rho[molo::kHoughAngles] = {};
    int best_votes = 0;
    int best_angle = 0;
    int best_rho = 0;
    const int* const acc = hough_acc;
    const int scan_end = voted_high < hough_rho_count ? voted_high + 1 : hough_rho_count;
    for (int r = voted_low; r < scan_end; ++r) {
        const int* cells = acc + static_cast<size_t>(r) * angles;
        for (int a = 0; a < angles; ++a) {
            const int votes = cells[a];
            if (votes > column_most[a]) {
                column_most[a] = votes;
                column_rho[a] = r;
            }
            if (votes > best_votes) {
                best_votes = votes;
                best_angle = a;
                best_rho = r;
            }
        }
    }
    peak_votes = best_votes;
    peak_angle = best_angle;
    peak_rho = best_rho;

    // Vote profile over the 31 angles around the peak, wrapped into [0, 180).
    float profile[kNearCount];
    double sum = 0.0;
    double sum_sq = 0.0;
    for (int j = 0; j < kNearCount; ++j) {
        int k = peak_angle - kNearHalf + j;
        if (k < 0) {
            k += 180;
        } else if (k > 179) {
            k -= 180;
        }
        near_angles[j] = k;
        profile[j] = static_cast<float>(column_most[k]) / static_cast<float>(edge_count);
        sum += static_cast<double>(profile[j]);
        sum_sq += static_cast<double>(profile[j] * profile[j]);
    }

    // Second line: the strongest cell outside the neighbourhood, angle outer
    // and rho inner. Its angle and rho keep their previous values when no cell
    // has a vote.
    second_votes = 0;
    for (int a = 0; a < angles; ++a) {
        bool near = false;
        for (int j = 0; j < kNearCount; ++j) {
            if (near_angles[j] == a) near = true;
        }
        if (near) continue;
        if (column_most[a] > second_votes) {
            second_votes = column_most[a];
            second_angle = a;
            second_rho = column_rho[a];
        }
    }

    // The run measure reads only the outline, so measuring the main line once
    // here gives the same figures as measuring it right after the peak search.
    const RunFigures main_line = measure_run(*this, peak_angle, peak_rho);
    line_run = main_line.run;
    line_longest_run = main_line.longest;
    line_dist_sum = main_line.dist_sum;
    const RunFigures second_line = measure_run(*this, second_angle, second_rho);
    second_run = second_line.run;
    second_longest_run = second_line.longest;
    second_dist_sum = second_line.dist_sum;

    // A sharp profile (strong centre, weak flanks) with high variance means
    // a dominant straight line. The three angles between centre and flanks on
    // each side take part in neither.
    float centre = profile[13];
    for (int j = 14; j <= 17; ++j) centre += profile[j];
    centre /= 5.0f;
    float flanks = profile[0];
    for (int j = 1; j <= 9; ++j) flanks += profile[j];
    for (int j = 21; j <= 30; ++j) flanks += profile[j];
    flanks /= 20.0f;
    const float ratio = centre / flanks;
    const double variance = sum_sq / 31.0 - (sum / 31.0) * (sum / 31.0);
    return static_cast<double>(ratio) *
           (static_cast<double>(peak_votes) / static_cast<double>(edge_count) * variance * 10.0 *
            static_cast<double>(ratio));
}
