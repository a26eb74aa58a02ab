// Harris corner map of the candidate's outline. The 0/1 finger mask is
// differentiated with the 7 x 7 operator over the bounding box grown by 3,
// the gradient products are smoothed with the 7 x 7 Gaussian weights, and the
// integer Harris measure is evaluated on outline pixels only. Both passes are
// parallel row loops; each row writes only its own row of its output planes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "features/harris_response.h"
#include "molo/detector.h"
#include "molo/support.h"
#include "prep/parallel_rows.h"

namespace {

// Half-size of the smoothing window, which matches the 7 x 7 blur kernel.
constexpr int kHalf = 3;
// Columns differentiated from one set of column sums.
constexpr int kColumnBlock = 128;

}  // namespace

int Molo_FingerDetect::HarrisCorner() {
    const int w = down_width;
    const int h = down_height;
    const size_t cells = static_cast<size_t>(w) * static_cast<size_t>(h);
    std::memset(grad_xx, 0, cells * sizeof(int));
    std::memset(grad_yy, 0, cells * sizeof(int));
    std::memset(grad_xy, 0, cells * sizeof(int));
    std::memset(corner_response, 0, cells * sizeof(int));

    // Differentiated area: the box grown by the smoothing half-size, kept at
    // least 4 inside the grid so the 7 x 7 operator stays within the plane.
    // The ends are exclusive and also bound the straight-line walk.
    const int r0 = std::max(box_top - kHalf, 4);
    const int c0 = std::max(box_left - kHalf, 4);
    scan_row_end = std::min(box_bottom + kHalf, h - 4);
    scan_col_end = std::min(box_right + kHalf, w - 4);

    // The 7 x 7 derivative of each pixel, as Derivative gives it, from
    // per-column sums. With mask rows m0..m6 of a window and t = 0 1 2 3 2 1 0,
    // the horizontal kernel is (3 - j) + t[r] sign(3 - j) and the vertical one
    // its transpose, so for window columns x_0..x_6
    //   horizontal = sum_j (3 - j) S(x_j) + sum_j sign(3 - j) T(x_j)
    //   vertical   = sum_j U(x_j) + sum_j t[j] V(x_j)
    // with the column sums S = sum_r m_r, T = sum_r t[r] m_r,
    // U = sum_r (3 - r) m_r and V = sum_r sign(3 - r) m_r. The arithmetic is
    // in integers, so the regrouping gives Derivative's values exactly; each
    // column's sums serve the seven pixels whose windows hold it.
    //
    // A derivative is at most 69 times the largest mask byte in magnitude, so
    // the products fit in int for any mask; the cross product is stored doubled,
    // as the response expects (pinned by
    // HarrisHough.RoundRegionPassesRectangleFailsOnItsCorners).
    auto differentiate = [&](int k) {
        const int row = r0 + k;
        const size_t base = static_cast<size_t>(row) * w;
        const unsigned char* const top = finger_mask + static_cast<size_t>(row - kHalf) * w;
        const size_t pitch = static_cast<size_t>(w);
        int sum_s[kColumnBlock + 2 * kHalf];
        int sum_t[kColumnBlock + 2 * kHalf];
        int sum_u[kColumnBlock + 2 * kHalf];
        int sum_v[kColumnBlock + 2 * kHalf];
        for (int first = c0; first < scan_col_end; first += kColumnBlock) {
            const int last = std::min(first + kColumnBlock, scan_col_end);
            const int columns = last - first + 2 * kHalf;
            const unsigned char* const x = top + (first - kHalf);
            for (int j = 0; j < columns; ++j) {
                const int m0 = x[j];
                const int m1 = x[j + pitch];
                const int m2 = x[j + 2 * pitch];
                const int m3 = x[j + 3 * pitch];
                const int m4 = x[j + 4 * pitch];
                const int m5 = x[j + 5 * pitch];
                const int m6 = x[j + 6 * pitch];
                sum_s[j] = m0 + m1 + m2 + m3 + m4 + m5 + m6;
                sum_t[j] = m1 + 2 * m2 + 3 * m3 + 2 * m4 + m5;
                sum_u[j] = 3 * (m0 - m6) + 2 * (m1 - m5) + (m2 - m4);
                sum_v[j] = (m0 + m1 + m2) - (m4 + m5 + m6);
            }
            for (int c = first; c < last; ++c) {
                const int j = c - first;
                const int* s = sum_s + j;
                const int* t = sum_t + j;
                const int* u = sum_u + j;
                const int* v = sum_v + j;
                const int hz = 3 * (s[0] - s[6]) + 2 * (s[1] - s[5]) + (s[2] - s[4]) +
                               (t[0] + t[1] + t[2]) - (t[4] + t[5] + t[6]);
                const int vt = (u[0] + u[1] + u[2] + u[3] + u[4] + u[5] + u[6]) + v[1] + 2 * v[2] +
                               3 * v[3] + 2 * v[4] + v[5];
                grad_yy[base + c] = vt * vt;
                grad_xx[base + c] = hz * hz;
                grad_xy[base + c] = 2 * vt * hz;
            }
        }
    };
    // 49 operator taps per differentiated cell.
    if (r0 < scan_row_end) {
        molo::parallel_rows(scan_row_end - r0, differentiate,
                            49 * static_cast<std::int64_t>(std::max(scan_col_end - c0, 0)));
    }

    // The second pass reads product rows up to 3 away, so it starts only once
    // the first has returned. Products are 0 outside the differentiated
    // area, so a window that does not reach into it sums to 0 and its
    // response, ((0 * 0 - 0 * 0) * 25 - 0) * 4, is the 0 already in place:
    // only pixels within 3 of the area are evaluated.
    const int resp_r0 = std::max(r0 - kHalf, kHalf);
    const int resp_r1 = std::min(scan_row_end + kHalf, h - kHalf);
    const int resp_c0 = std::max(c0 - kHalf, kHalf);
    const int resp_c1 = std::min(scan_col_end + kHalf, w - kHalf);
    const bool any_products = r0 < scan_row_end && c0 < scan_col_end;
    const int sum = blur_kernel_sum;
    auto respond = [&](int k) {
        const int row = resp_r0 + k;
        const size_t base = static_cast<size_t>(row) * w;
        for (int c = resp_c0; c < resp_c1; ++c) {
            if (edge_map[base + c] != 1) continue;
            // Weighted window sums in 32 bits, wrapping like the rest of the
            // measure (they fit for a 0/1 mask, not for arbitrary bytes).
            uint32_t sxx = 0;
            uint32_t syy = 0;
            uint32_t sxy = 0;
            for (int r = 0; r < 2 * kHalf + 1; ++r) {
                const int* weights = blur_kernel[r];
                const size_t at = static_cast<size_t>(row - kHalf + r) * w + (c - kHalf);
                for (int q = 0; q < 2 * kHalf + 1; ++q) {
                    const uint32_t wt = static_cast<uint32_t>(weights[q]);
                    sxx += wt * static_cast<uint32_t>(grad_xx[at + q]);
                    syy += wt * static_cast<uint32_t>(grad_yy[at + q]);
                    sxy += wt * static_cast<uint32_t>(grad_xy[at + q]);
                }
            }
            const int a = molo::wrap_int32(sxx) / sum;
            const int b = molo::wrap_int32(syy) / sum;
            const int cross = molo::wrap_int32(sxy) / sum;
            corner_response[base + c] = molo::harris_response(a, b, cross);
        }
    };
    // A row is a scan of its cells; the few outline cells among them cost a
    // window sum each.
    if (any_products && resp_r0 < resp_r1) {
        molo::parallel_rows(resp_r1 - resp_r0, respond, resp_c1 - resp_c0);
    }

    // Strongest response, first in row-major order on ties; nothing positive
    // leaves the position at (0, 0). Responses outside the evaluated pixels
    // are 0 and never replace the maximum, which starts at 0.
    corner_row = 0;
    corner_col = 0;
    int best = 0;
    const int best_r1 = any_products ? resp_r1 : resp_r0;
    for (int row = resp_r0; row < best_r1; ++row) {
        const int* line = corner_response + static_cast<size_t>(row) * w;
        for (int c = resp_c0; c < resp_c1; ++c) {
            if (line[c] > best) {
                best = line[c];
                corner_row = row;
                corner_col = c;
            }
        }
    }
    return best;
}
