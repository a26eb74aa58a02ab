// Every row-kernel set built for this target against the scalar reference,
// bit for bit, on random blocks of odd and even widths with padded strides.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "prep/downsample_rows.h"

namespace {

// Exactly the bytes a kernel may read: 7 full rows and the used part of the
// eighth, so that a read past the block is caught by the sanitizer build.
std::vector<uint8_t> block_rows(std::mt19937& rng, int stride, int used, int extreme) {
    std::vector<uint8_t> rows(static_cast<size_t>(7) * stride + used);
    std::uniform_int_distribution<int> byte(0, 255);
    for (uint8_t& b : rows) b = static_cast<uint8_t>(extreme >= 0 ? extreme : byte(rng));
    return rows;
}

}  // namespace

TEST(DownsampleRows, EverySetMatchesTheScalarReference) {
    const molo::DownsampleRowSets all = molo::all_downsample_rows();
    ASSERT_GE(all.count, 1);
    EXPECT_EQ(all.sets[0]->luma, &molo::downsample_luma_row_scalar);
    std::mt19937 rng(2024);
    for (int s = 0; s < all.count; ++s) {
        const molo::DownsampleRows& set = *all.sets[s];
        SCOPED_TRACE(set.name);
        for (int columns = 0; columns <= 37; ++columns) {
            for (int padding : {0, 1, 3, 24}) {
                // -1: random bytes; 0 and 255: the extremes of the sums.
                for (int extreme : {-1, -1, 0, 255}) {
                    const int luma_stride = 8 * columns + padding;
                    const std::vector<uint8_t> y =
                        block_rows(rng, luma_stride, 8 * columns, extreme);
                    std::vector<uint8_t> want(columns + 1, 0xAB);
                    std::vector<uint8_t> got(columns + 1, 0xAB);
                    molo::downsample_luma_row_scalar(y.data(), luma_stride, want.data(), columns);
                    set.luma(y.data(), luma_stride, got.data(), columns);
                    ASSERT_EQ(got, want) << columns << " columns, stride " << luma_stride;

                    const int pairs = columns;
                    const int chroma_stride = 16 * pairs + padding;
                    const std::vector<uint8_t> vu =
                        block_rows(rng, chroma_stride, 16 * pairs, extreme);
                    for (bool swap : {false, true}) {
                        std::vector<uint8_t> want_vu(2 * pairs + 1, 0xAB);
                        std::vector<uint8_t> got_vu(2 * pairs + 1, 0xAB);
                        molo::downsample_chroma_row_scalar(vu.data(), chroma_stride, want_vu.data(),
                                                           pairs, swap);
                        set.chroma(vu.data(), chroma_stride, got_vu.data(), pairs, swap);
                        ASSERT_EQ(got_vu, want_vu)
                            << pairs << " pairs, stride " << chroma_stride << ", swap " << swap;
                    }
                }
            }
        }
    }
}

TEST(DownsampleRows, TheDetectorUsesTheLastSetBuilt) {
    const molo::DownsampleRowSets all = molo::all_downsample_rows();
    EXPECT_EQ(&molo::downsample_rows(), all.sets[all.count - 1]);
#if MOLO_DOWNSAMPLE_SSE2 || MOLO_DOWNSAMPLE_NEON
    EXPECT_EQ(all.count, 2);  // the scalar reference and one vector set
#endif
}
