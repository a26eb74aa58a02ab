#include <gtest/gtest.h>

#include <vector>

#include "MoloFingerDetect.h"

namespace {

// A w x h plane with one padding byte, filled by f(row, col).
template <typename F>
std::vector<uint8_t> make_plane(int w, int h, F f, uint8_t padding = 0) {
    std::vector<uint8_t> p(static_cast<size_t>(w) * h + 1, padding);
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) p[r * w + c] = static_cast<uint8_t>(f(r, c));
    }
    return p;
}

int sobel3(std::vector<uint8_t>& p, int row, int col, int w, int h) {
    int m = -1;
    Molo_FingerDetect::Sobel3(p.data(), row, col, w, h, &m);
    return m;
}

}  // namespace

TEST(Sobel3, UniformPlaneAndZeroCorners) {
    auto flat = make_plane(6, 5, [](int, int) { return 90; });
    for (int r = 0; r < 5; ++r) {
        for (int c = 0; c < 5; ++c) EXPECT_EQ(sobel3(flat, r, c, 6, 5), 0);
    }
    auto ramp = make_plane(6, 5, [](int r, int c) { return 40 * r + 10 * c; });
    EXPECT_EQ(sobel3(ramp, 0, 0, 6, 5), 0);
    EXPECT_EQ(sobel3(ramp, 4, 0, 6, 5), 0);
}

TEST(Sobel3, VerticalStepGives1020) {
    auto step = make_plane(8, 6, [](int, int c) { return c < 4 ? 0 : 255; });
    for (int r = 1; r < 5; ++r) {
        EXPECT_EQ(sobel3(step, r, 3, 8, 6), 1020);
        EXPECT_EQ(sobel3(step, r, 4, 8, 6), 1020);
        EXPECT_EQ(sobel3(step, r, 2, 8, 6), 0);
    }
}

TEST(Sobel3, BorderWindowsShiftInward) {
    // A step between columns 0 and 1: the left column's window starts at
    // column 0, so it sees the step like column 1 does.
    auto left_step = make_plane(6, 5, [](int, int c) { return c == 0 ? 0 : 100; });
    EXPECT_EQ(sobel3(left_step, 2, 0, 6, 5), sobel3(left_step, 2, 1, 6, 5));
    // A step between rows 0 and 1: row 0 takes rows 0..2 like row 1.
    auto top_step = make_plane(6, 5, [](int r, int) { return r == 0 ? 0 : 100; });
    EXPECT_EQ(sobel3(top_step, 0, 2, 6, 5), 400);
    // The last column takes columns w-3..w-1: a step between the last two is seen.
    auto right_step = make_plane(6, 5, [](int, int c) { return c == 5 ? 100 : 0; });
    EXPECT_EQ(sobel3(right_step, 2, 5, 6, 5), 400);
    // The last row takes rows h-3..h-1.
    auto bottom_step = make_plane(6, 5, [](int r, int) { return r == 4 ? 100 : 0; });
    EXPECT_EQ(sobel3(bottom_step, 4, 2, 6, 5), 400);
}

TEST(Sobel3, FirstAndLastRowLastColumnReadOnePastTheRow) {
    // At (0, w-1) the window is columns w-2..w: column w is the first byte of
    // the next row. At the very last pixel it is the padding byte past the plane.
    auto p = make_plane(4, 4, [](int r, int c) { return c == 0 && r == 1 ? 200 : 0; });
    EXPECT_GT(sobel3(p, 0, 3, 4, 4), 0);
    auto zero_pad = make_plane(4, 4, [](int, int) { return 0; }, 0);
    auto high_pad = make_plane(4, 4, [](int, int) { return 0; }, 200);
    EXPECT_EQ(sobel3(zero_pad, 3, 3, 4, 4), 0);
    EXPECT_GT(sobel3(high_pad, 3, 3, 4, 4), 0);
}

TEST(Sobel5, UniformPlaneAndAsymmetricKernel) {
    Molo_FingerDetect d;
    auto flat = make_plane(7, 7, [](int, int) { return 50; });
    int v = 1, h = 1, angle = 0;
    d.Sobel5(flat.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    // The vertical kernel's weights sum to -4 (its second row is not the
    // mirror of the fourth), so even a flat plane has a vertical response.
    EXPECT_EQ(v, -4 * 50);
    EXPECT_EQ(h, 0);
    EXPECT_EQ(angle, 0);

    auto dark = make_plane(7, 7, [](int, int) { return 0; });
    d.Sobel5(dark.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, 0);
    EXPECT_EQ(angle, -90);

    // One bright pixel above-right of the centre weighs -8, its mirror below +4.
    auto above = make_plane(7, 7, [](int r, int c) { return r == 2 && c == 4 ? 1 : 0; });
    auto below = make_plane(7, 7, [](int r, int c) { return r == 4 && c == 4 ? 1 : 0; });
    d.Sobel5(above.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, -8);
    EXPECT_EQ(h, 4);
    EXPECT_EQ(angle, -26);  // atan(4 / -8) in degrees, truncated toward zero
    d.Sobel5(below.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, 4);
}

TEST(Derivative, MeasuresLeftMinusRightAndTopMinusBottom) {
    auto right_ramp = make_plane(9, 9, [](int, int c) { return 10 * c; });
    int v = 0, h = 0;
    Derivative(right_ramp.data(), 4, 4, 9, &v, &h);
    EXPECT_LT(h, 0);
    EXPECT_EQ(v, 0);
    auto down_ramp = make_plane(9, 9, [](int r, int) { return 10 * r; });
    Derivative(down_ramp.data(), 4, 4, 9, &v, &h);
    EXPECT_LT(v, 0);
    EXPECT_EQ(h, 0);
    // A single pixel at window position (0, 1): DerivH there is 2, DerivV 4.
    auto dot = make_plane(9, 9, [](int r, int c) { return r == 1 && c == 2 ? 1 : 0; });
    Derivative(dot.data(), 4, 4, 9, &v, &h);
    EXPECT_EQ(h, 2);
    EXPECT_EQ(v, 4);
}

TEST(Exponential, SymmetricTruncatedGaussian) {
    int** m = allocate_int_matrix(7, 7);
    exponential(m, 7, 7, 3.0f);
    int sum = 0;
    for (int r = 0; r < 7; ++r) {
        for (int c = 0; c < 7; ++c) {
            sum += m[r][c];
            EXPECT_EQ(m[r][c], m[c][r]);
            EXPECT_EQ(m[r][c], m[6 - r][6 - c]);
            EXPECT_LE(m[r][c], m[3][3]);
        }
    }
    EXPECT_LE(sum, 100000);
    EXPECT_GT(sum, 99950);
    EXPECT_GT(m[0][0], 0);
    free_matrix(reinterpret_cast<void**>(m));
}
