// NEON row kernels, for 32-bit ARM with NEON and for 64-bit ARM. Luma bytes
// are added pairwise into 16-bit lanes over the 8 rows, then folded to one
// sum per block; chroma bytes are widened and summed over the 8 rows before
// the pairs are folded together. Blocks left over after the vector steps go
// through the scalar kernel.
#include "prep/downsample_rows.h"

#if MOLO_DOWNSAMPLE_NEON

#include <arm_neon.h>

#include <cstdint>
#include <cstring>

namespace molo {

void downsample_luma_row_neon(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                              int columns) {
    int c = 0;
    // Four blocks per step. Each 16-bit lane collects 2 bytes of 8 rows (at
    // most 16 * 255); lanes 0-3 of s01 belong to block c, 4-7 to c + 1.
    for (; c + 4 <= columns; c += 4) {
        const unsigned char* p = src + 8 * c;
        uint16x8_t s01 = vdupq_n_u16(0);
        uint16x8_t s23 = vdupq_n_u16(0);
        for (int dy = 0; dy < 8; ++dy, p += stride) {
            s01 = vpadalq_u8(s01, vld1q_u8(p));
            s23 = vpadalq_u8(s23, vld1q_u8(p + 16));
        }
        const uint32x4_t q01 = vpaddlq_u16(s01);
        const uint32x4_t q23 = vpaddlq_u16(s23);
        const uint32x4_t sums = vcombine_u32(vpadd_u32(vget_low_u32(q01), vget_high_u32(q01)),
                                             vpadd_u32(vget_low_u32(q23), vget_high_u32(q23)));
        const uint16x4_t means = vshrn_n_u32(sums, 6);
        const uint8x8_t bytes = vmovn_u16(vcombine_u16(means, means));
        const uint32_t four = vget_lane_u32(vreinterpret_u32_u8(bytes), 0);
        std::memcpy(out + c, &four, sizeof four);
    }
    downsample_luma_row_scalar(src + 8 * c, stride, out + c, columns - c);
}

void downsample_chroma_row_neon(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                                int pairs, bool swap) {
    int k = 0;
    // Two pairs per step. The 16-bit lanes of s0 / s1 alternate first and
    // second bytes; each collects 2 bytes of 8 rows, at most 16 * 255.
    for (; k + 2 <= pairs; k += 2) {
        const unsigned char* p = src + 16 * k;
        uint16x8_t s0 = vdupq_n_u16(0);
        uint16x8_t s1 = vdupq_n_u16(0);
        for (int dy = 0; dy < 8; ++dy, p += stride) {
            const uint8x16_t a = vld1q_u8(p);
            const uint8x16_t b = vld1q_u8(p + 16);
            s0 = vaddq_u16(s0, vaddl_u8(vget_low_u8(a), vget_high_u8(a)));
            s1 = vaddq_u16(s1, vaddl_u8(vget_low_u8(b), vget_high_u8(b)));
        }
        // Read as 32-bit lanes, each holds (second << 16) + first; adding the
        // four lanes of one pair cannot carry out of the first's 16 bits
        // (4 * 4080 < 65536), so each total is (B << 16) + A.
        const uint32x4_t w0 = vreinterpretq_u32_u16(s0);
        const uint32x4_t w1 = vreinterpretq_u32_u16(s1);
        const uint32x2_t totals = vpadd_u32(vadd_u32(vget_low_u32(w0), vget_high_u32(w0)),
                                            vadd_u32(vget_low_u32(w1), vget_high_u32(w1)));
        const uint16x4_t means = vshr_n_u16(vreinterpret_u16_u32(totals), 6);  // A0 B0 A1 B1
        uint8x8_t bytes = vmovn_u16(vcombine_u16(means, means));
        if (swap) bytes = vrev16_u8(bytes);
        const uint32_t four = vget_lane_u32(vreinterpret_u32_u8(bytes), 0);
        std::memcpy(out + 2 * k, &four, sizeof four);
    }
    downsample_chroma_row_scalar(src + 16 * k, stride, out + 2 * k, pairs - k, swap);
}

}  // namespace molo

#endif  // MOLO_DOWNSAMPLE_NEON
