#include <gtest/gtest.h>

#include <cstdint>

#include "features/harris_response.h"
#include "molo/support.h"
#include "prep/parallel_rows.h"
#include "common/region_grid.h"

TEST(HarrisCorner, FirstMaximumInRowMajorOrderOrNoneAtTheOrigin) {
    // The same point of two equal squares' corners; the lower one lies
    // further left, which a column-major scan or one keeping the last
    // maximum would report. The outline is drawn first: the box is the extent
    // of the region.
    ScopedDetector d(80, 60);
    draw(d, d->edge_map, [](int r, int c) { return (r == 20 && c == 12) || (r == 40 && c == 7); });
    draw(d, d->finger_mask, [](int r, int c) {
        return in_rect(r, c, 20, 10, 29, 19) || in_rect(r, c, 40, 5, 49, 14);
    });
    const int best = d->HarrisCorner();
    ASSERT_EQ(d->corner_response[d.index(40, 7)], best);
    EXPECT_TRUE(d->corner_row == 20 && d->corner_col == 12);
    // A region on the last row leaves nothing to differentiate (the area
    // starts and ends at row 56): no response, and the corner moves back to
    // (0, 0).
    draw(d, d->edge_map, [](int r, int) { return r >= 50; });
    draw(d, d->finger_mask, [](int r, int c) { return r == 59 && c >= 10 && c <= 30; });
    EXPECT_EQ(d->HarrisCorner(), 0);
    EXPECT_EQ(d->scan_row_end, 56);
    EXPECT_TRUE(d->corner_row == 0 && d->corner_col == 0);
    for (int i = 0; i < d.cells(); ++i) ASSERT_EQ(d->grad_yy[i] | d->corner_response[i], 0);
}

TEST(HarrisCorner, WrapsModulo32BitsAlikeInSerialAndParallel) {
    EXPECT_EQ(molo::harris_response(0, 0, 9522), -476913808);         // -9066848400 wrapped
    EXPECT_EQ(molo::harris_response(3000, 3000, -6000), 1450967296);  // -2844000000 wrapped
    // Blocks of 0 and 1 strewn with cells of 255, whose window sums and
    // responses overflow 32 bits (signed arithmetic would be caught by the
    // sanitizer). Both passes of the map give the same bits in parallel.
    auto analyse = [](int contexts) {
        molo::set_execution_contexts(contexts);
        molo::set_parallel_work_threshold(0);  // this grid is below it
        ScopedDetector d(120, 90);
        draw(d, d->edge_map, [](int r, int c) { return (r * 7 + c * 3) % 4 != 0; });
        draw(d, d->finger_mask,
             [](int r, int c) { return (r * 7 + c * 13) % 19 < 2 ? 255 : (r / 9 + c / 11) % 2; });
        std::vector<int> out{d->HarrisCorner()};
        out.insert(out.end(), d->corner_response, d->corner_response + d.cells());
        return out;
    };
    const std::vector<int> serial = analyse(1);
    EXPECT_GT(serial[0], 0);
    EXPECT_EQ(serial, analyse(4));
    molo::set_execution_contexts(0);
    molo::set_parallel_work_threshold(-1);
}

TEST(HarrisCorner, DerivativeMeasuresLeftMinusRightAndTopMinusBottom) {
    std::vector<uint8_t> bright_top_left(81, 0);
    for (int i = 0; i < 81; ++i) bright_top_left[i] = i % 9 < 4 && i / 9 < 4 ? 100 : 0;
    int v = 0, h = 0;
    Derivative(bright_top_left.data(), 4, 4, 9, &v, &h);
    EXPECT_GT(v, 0);
    EXPECT_GT(h, 0);
}
