#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "features/line_crossing.h"
#include "support/float_to_int.h"

namespace {

// The search as the per-pixel expression states it.
void reference(const molo::HoughLineRef& a, const molo::HoughLineRef& b, int diag, int rows,
               int columns, int* cross_row, int* cross_col) {
    auto position = [diag](const molo::HoughLineRef& l, int row, int col) {
        const float along = l.cos_a * static_cast<float>(row) + l.sin_a * static_cast<float>(col);
        return (along + static_cast<float>(diag)) + 0.5f;
    };
    float best = 100.0f;
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < columns; ++col) {
            const int d1 =
                std::abs(molo::to_int_sat(static_cast<float>(a.rho) - position(a, row, col)));
            const int d2 =
                std::abs(molo::to_int_sat(static_cast<float>(b.rho) - position(b, row, col)));
            const float total = static_cast<float>(d1) + static_cast<float>(d2);
            if (total < best) {
                best = total;
                *cross_row = row;
                *cross_col = col;
            }
        }
    }
}

}  // namespace

// Every angle pair of a coarse sweep, rho indices across the range, grids
// wider than one block of the search and tiny ones, and lines far off the
// grid (nothing below 100, the outputs untouched): the same pixel as the
// expression, ties included (parallel lines tie along a whole band).
TEST(LineCrossing, MatchesThePerPixelExpression) {
    const float step = 3.141592f / 180;
    const int grids[][2] = {{134, 240}, {60, 80}, {3, 2}, {1, 300}, {90, 513}};
    for (const auto& g : grids) {
        const int rows = g[0];
        const int columns = g[1];
        const int diag =
            static_cast<int>(std::sqrt(static_cast<double>(rows * rows + columns * columns)));
        for (int a1 = 0; a1 < 180; a1 += 23) {
            for (int a2 = 0; a2 < 180; a2 += 31) {
                for (int rho : {0, diag / 2, diag, diag + diag / 3, 2 * diag}) {
                    const float t1 = static_cast<float>(a1) * step;
                    const float t2 = static_cast<float>(a2) * step;
                    const molo::HoughLineRef l1{
                        static_cast<float>(std::cos(static_cast<double>(t1))),
                        static_cast<float>(std::sin(static_cast<double>(t1))), rho};
                    const molo::HoughLineRef l2{
                        static_cast<float>(std::cos(static_cast<double>(t2))),
                        static_cast<float>(std::sin(static_cast<double>(t2))), 2 * diag - rho / 2};
                    int want_row = -1, want_col = -1, got_row = -1, got_col = -1;
                    reference(l1, l2, diag, rows, columns, &want_row, &want_col);
                    molo::find_line_crossing(l1, l2, diag, rows, columns, &got_row, &got_col);
                    ASSERT_EQ(got_row, want_row)
                        << rows << "x" << columns << " " << a1 << " " << a2 << " " << rho;
                    ASSERT_EQ(got_col, want_col)
                        << rows << "x" << columns << " " << a1 << " " << a2 << " " << rho;
                }
            }
        }
    }
}
