// SSE2 row kernels. A luma block row of 8 bytes is summed by one
// sum-of-absolute-differences against zero; chroma bytes are widened to
// 16 bits and summed over the 8 rows before the pairs are folded together.
// Blocks left over after the vector steps go through the scalar kernel.
#include "prep/downsample_rows.h"

#if MOLO_DOWNSAMPLE_SSE2

#include <emmintrin.h>

#include <cstdint>
#include <cstring>

namespace molo {
namespace {

inline __m128i load16(const unsigned char* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

}  // namespace

void downsample_luma_row_sse2(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                              int columns) {
    const __m128i zero = _mm_setzero_si128();
    int c = 0;
    // Four blocks per step: each 64-bit lane of s01 / s23 collects one
    // block's sum (at most 64 * 255, so it stays within the lane's low 16 bits).
    for (; c + 4 <= columns; c += 4) {
        const unsigned char* p = src + 8 * c;
        __m128i s01 = zero;
        __m128i s23 = zero;
        for (int dy = 0; dy < 8; ++dy, p += stride) {
            s01 = _mm_add_epi64(s01, _mm_sad_epu8(load16(p), zero));
            s23 = _mm_add_epi64(s23, _mm_sad_epu8(load16(p + 16), zero));
        }
        // Means in bytes 0 and 8 (blocks c, c + 1) and 2 and 10 (c + 2, c + 3),
        // then bytes 8 and 10 moved next to 0 and 2.
        __m128i means =
            _mm_or_si128(_mm_srli_epi64(s01, 6), _mm_slli_epi64(_mm_srli_epi64(s23, 6), 16));
        means = _mm_or_si128(means, _mm_srli_si128(means, 7));
        const uint32_t four = static_cast<uint32_t>(_mm_cvtsi128_si32(means));
        std::memcpy(out + c, &four, sizeof four);
    }
    downsample_luma_row_scalar(src + 8 * c, stride, out + c, columns - c);
}

void downsample_chroma_row_sse2(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                                int pairs, bool swap) {
    const __m128i zero = _mm_setzero_si128();
    int k = 0;
    // Two pairs per step. The 16-bit lanes of s0 / s1 alternate first and
    // second bytes; each collects 2 bytes of 8 rows, at most 16 * 255.
    for (; k + 2 <= pairs; k += 2) {
        const unsigned char* p = src + 16 * k;
        __m128i s0 = zero;
        __m128i s1 = zero;
        for (int dy = 0; dy < 8; ++dy, p += stride) {
            const __m128i a = load16(p);
            const __m128i b = load16(p + 16);
            s0 = _mm_add_epi16(
                s0, _mm_add_epi16(_mm_unpacklo_epi8(a, zero), _mm_unpackhi_epi8(a, zero)));
            s1 = _mm_add_epi16(
                s1, _mm_add_epi16(_mm_unpacklo_epi8(b, zero), _mm_unpackhi_epi8(b, zero)));
        }
        // Read as 32-bit lanes, each holds (second << 16) + first; adding the
        // four lanes of one pair cannot carry out of the first's 16 bits
        // (4 * 4080 < 65536), so each total is (B << 16) + A.
        __m128i t = _mm_add_epi32(_mm_unpacklo_epi64(s0, s1), _mm_unpackhi_epi64(s0, s1));
        t = _mm_add_epi32(t, _mm_srli_epi64(t, 32));
        t = _mm_shuffle_epi32(t, _MM_SHUFFLE(3, 1, 2, 0));  // words A0 B0 A1 B1
        t = _mm_srli_epi16(t, 6);
        if (swap) t = _mm_shufflelo_epi16(t, _MM_SHUFFLE(2, 3, 0, 1));
        const uint32_t four = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(t, t)));
        std::memcpy(out + 2 * k, &four, sizeof four);
    }
    downsample_chroma_row_scalar(src + 16 * k, stride, out + 2 * k, pairs - k, swap);
}

}  // namespace molo

#endif  // MOLO_DOWNSAMPLE_SSE2
