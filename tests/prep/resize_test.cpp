// Nothing on the frame path rescales chroma; this pins the averaging
// and the destination row it never writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "common/detector_fixture.h"
#include "common/log_capture.h"

namespace {

// A chroma plane of `pairs` x `rows` pairs whose bytes encode their position.
std::vector<uint8_t> numbered_chroma(int pairs, int rows) {
    std::vector<uint8_t> vu(static_cast<size_t>(pairs) * 2 * rows);
    for (int r = 0; r < rows; ++r) {
        for (int p = 0; p < pairs; ++p) {
            vu[(r * pairs + p) * 2] = static_cast<uint8_t>(r * 3 + p);
            vu[(r * pairs + p) * 2 + 1] = static_cast<uint8_t>(200 - r - 2 * p);
        }
    }
    return vu;
}

}  // namespace

TEST(Resize, HalvingAveragesTwoByTwoPairsSkipsTheLastRowAndEmptyBlocksLog) {
    ScopedDetector d(8, 8);
    LogCapture log;
    std::vector<uint8_t> in = numbered_chroma(320, 240);
    std::vector<uint8_t> luma(320 * 240, 77);
    std::vector<uint8_t> out(320 * 120, 0xEE);
    d->resize(nullptr, in.data(), luma.data(), out.data(), 640, 640, 480, 320, 240);
    // Pair (r, c) is the truncated mean of input rows 2r, 2r + 1 and pairs
    // 2c, 2c + 1: worked out by hand at three places, the last in the last
    // column, where the bytes wrap.
    const int spots[][4] = {{0, 0, 2, 198}, {7, 3, 50, 172}, {118, 159, 4, 94}};
    for (const auto& p : spots) {
        EXPECT_EQ(out[p[0] * 320 + 2 * p[1]], p[2]) << p[0] << "," << p[1];
        EXPECT_EQ(out[p[0] * 320 + 2 * p[1] + 1], p[3]) << p[0] << "," << p[1];
    }
    for (int i = 119 * 320; i < 120 * 320; ++i) ASSERT_EQ(out[i], 0xEE);  // row 119 untouched
    EXPECT_EQ(luma, std::vector<uint8_t>(320 * 240, 77));
    EXPECT_TRUE(log.messages().empty());
    // Enlarging 2x gives pair 1 of each row the empty block [1, 1): it keeps
    // its bytes, and the call logs.
    std::fill(out.begin(), out.end(), 0xEE);
    d->resize(nullptr, in.data(), nullptr, out.data(), 8, 8, 8, 16, 16);
    EXPECT_EQ(out[2], 0xEE);
    EXPECT_EQ(log.messages().at(0), (LoggedMessage{6, "Error! maybe?"}));
}
