#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "features/harris_response.h"
#include "features/outline_scene.h"
#include "prep/parallel_rows.h"

TEST(HarrisCorner, StraightOutlinesRespondNegativelyAndCornersPositively) {
    ScopedDetector d(80, 60);
    paint_region(d, [](int r, int c) { return in_rect(r, c, 10, 15, 39, 59); });
    mark_outline(d, [](int r, int c) {
        return in_rect(r, c, 10, 15, 39, 59) && !in_rect(r, c, 11, 16, 38, 58);
    });
    const int best = d->HarrisCorner();
    EXPECT_EQ(d->scan_row_end, 42);  // box end + 3, exclusive
    EXPECT_EQ(d->scan_col_end, 62);
    auto at = [&](int r, int c) { return d->corner_response[d.index(r, c)]; };
    for (int c = 23; c <= 51; ++c) EXPECT_TRUE(at(10, c) < 0 && at(39, c) < 0) << c;
    for (int r = 18; r <= 31; ++r) EXPECT_TRUE(at(r, 15) < 0 && at(r, 59) < 0) << r;
    EXPECT_EQ(at(20, 30), 0);  // off the outline
    EXPECT_GT(best, 0);
    EXPECT_EQ(at(d->corner_row, d->corner_col), best);
    EXPECT_TRUE(std::abs(d->corner_row - 10) <= 3 && std::abs(d->corner_col - 15) <= 3);
    // The cross product is kept doubled.
    int v = 0, h = 0;
    Derivative(d->finger_mask, 12, 17, 80, &v, &h);
    ASSERT_NE(v * h, 0);
    EXPECT_EQ(d->grad_xy[d.index(12, 17)], 2 * v * h);
}

TEST(HarrisCorner, EqualCornersReportTheFirstInRowMajorOrder) {
    // The same point of three equal squares' corners; the lower one lies
    // further left, which a column-major scan would prefer.
    ScopedDetector d(80, 60);
    paint_region(d, [](int r, int c) {
        return in_rect(r, c, 20, 10, 29, 19) || in_rect(r, c, 20, 40, 29, 49) ||
               in_rect(r, c, 40, 5, 49, 14);
    });
    mark_outline(
        d, [](int r, int c) { return (r == 20 && (c == 12 || c == 42)) || (r == 40 && c == 7); });
    const int best = d->HarrisCorner();
    ASSERT_GT(best, 0);
    EXPECT_EQ(d->corner_response[d.index(20, 42)], best);
    EXPECT_EQ(d->corner_response[d.index(40, 7)], best);
    EXPECT_EQ(d->corner_row, 20);
    EXPECT_EQ(d->corner_col, 12);
}

TEST(HarrisCorner, EmptyDerivativeAreaGivesNoResponse) {
    // A region on the last row: the area starts and ends at row 56.
    ScopedDetector d(80, 60);
    paint_region(d, [](int r, int c) { return r == 59 && c >= 10 && c <= 30; });
    mark_outline(d, [](int r, int) { return r >= 50; });
    d->corner_row = d->corner_col = 5;
    EXPECT_EQ(d->HarrisCorner(), 0);
    EXPECT_EQ(d->scan_row_end, 56);
    EXPECT_EQ(d->corner_row, 0);
    EXPECT_EQ(d->corner_col, 0);
    for (int i = 0; i < d.cells(); ++i) ASSERT_EQ(d->grad_yy[i] | d->corner_response[i], 0);
}

TEST(HarrisCorner, SerialAndParallelPassesAgreeToTheBit) {
    // A 0/1 blob, and stripes of 255 whose window sums and responses
    // overflow 32 bits (signed arithmetic would be caught by the sanitizer).
    auto analyse = [](int contexts) {
        molo::set_execution_contexts(contexts);
        ScopedDetector d(120, 90);
        paint_region(d, [](int r, int c) {
            const int x = c - 30, y = r - 40;
            if (x * x + 2 * y * y + 3 * x * y / 2 < 600) return 1;
            return in_rect(r, c, 10, 70, 80, 110) && (r + c) % 11 < 5 ? 255 : 0;
        });
        mark_outline(d, [](int r, int c) { return (r * 7 + c * 3) % 4 != 0; });
        std::vector<int> out{d->HarrisCorner(), d->corner_row, d->corner_col};
        for (int* plane : {d->grad_xx, d->grad_yy, d->grad_xy, d->corner_response}) {
            out.insert(out.end(), plane, plane + d.cells());
        }
        molo::set_execution_contexts(0);
        return out;
    };
    const std::vector<int> serial = analyse(1);
    EXPECT_GT(serial[0], 0);
    EXPECT_EQ(serial, analyse(4));
}

TEST(HarrisResponse, WrapsModulo32Bits) {
    EXPECT_EQ(molo::harris_response(0, 3000, 0), -36000000);          // straight edge: -4 B^2
    EXPECT_EQ(molo::harris_response(0, 0, 9522), -476913808);         // -9066848400 wrapped
    EXPECT_EQ(molo::harris_response(3000, 3000, -6000), 1450967296);  // -2844000000 wrapped
}
