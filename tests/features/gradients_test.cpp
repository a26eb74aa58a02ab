#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "MoloFingerDetect.h"
#include "features/sobel3_window.h"

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
    Molo_FingerDetect d;
    d.Sobel3(p.data(), row, col, w, h, &m);
    return m;
}

}  // namespace

TEST(Sobel3, FlatTestOnTheSquareAgreesWithTheTruncatedRoot) {
    // The skin mask compares squared magnitudes; over every square a window
    // can give (|gx|, |gy| <= 1020) that must agree with Sobel3's own
    // magnitude, the truncated root, for the limit it uses and its neighbours.
    for (int limit : {59, 60, 61}) {
        for (int sq = 0; sq <= 2 * 1020 * 1020; ++sq) {
            const int magnitude =
                static_cast<int>(static_cast<float>(std::sqrt(static_cast<double>(sq))));
            ASSERT_EQ(molo::flat_below(sq, limit), magnitude < limit) << sq;
        }
    }
}

TEST(Sobel3, FirstAndLastRowLastColumnReadOnePastTheRow) {
    // At (0, w-1) the window's right column is the first byte of the next
    // row; at the very last pixel it is the padding byte past the plane.
    auto wrap = make_plane(4, 4, [](int r, int c) { return c == 0 && r == 1 ? 200 : 0; });
    EXPECT_GT(sobel3(wrap, 0, 3, 4, 4), 0);
    const auto black = [](int, int) { return 0; };
    auto zero_pad = make_plane(4, 4, black, 0);
    auto high_pad = make_plane(4, 4, black, 200);
    EXPECT_EQ(sobel3(zero_pad, 3, 3, 4, 4), 0);
    EXPECT_GT(sobel3(high_pad, 3, 3, 4, 4), 0);
}

TEST(Sobel5, AsymmetricVerticalKernelAndAngle) {
    Molo_FingerDetect d;
    int v = 1, h = 1, angle = 0;
    auto dark = make_plane(7, 7, [](int, int) { return 0; });
    d.Sobel5(dark.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, 0);
    EXPECT_EQ(h, 0);
    EXPECT_EQ(angle, -90);
    // The vertical kernel's second row is not the mirror of its fourth: its
    // weights sum to -4, so even a flat plane has a vertical response.
    auto flat = make_plane(7, 7, [](int, int) { return 50; });
    d.Sobel5(flat.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, -200);
    EXPECT_EQ(angle, 0);
    // One pixel above-right of the centre weighs -8 vertically, 4 horizontally.
    auto dot = make_plane(7, 7, [](int r, int c) { return r == 2 && c == 4 ? 1 : 0; });
    d.Sobel5(dot.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, -8);
    EXPECT_EQ(h, 4);
    EXPECT_EQ(angle, -26);  // atan(4 / -8) in degrees, truncated toward zero
    // Radians become degrees through 3.141592025756836, a little below pi:
    // this window's angle is 47 with it and would be 46 with pi.
    auto near_edge = make_plane(7, 7, [](int r, int c) {
        return r == 5 && c == 3 ? 51 : r == 3 && c == 5 ? 54 : r == 1 && c == 5 ? 1 : 0;
    });
    d.Sobel5(near_edge.data(), 3, 3, 7, &v, &h, nullptr, &angle);
    EXPECT_EQ(v, 152);
    EXPECT_EQ(h, 163);
    EXPECT_EQ(angle, 47);
}
