// The reference row kernels: plain integer sums, one block at a time.
#include <cstdint>

#include "prep/downsample_rows.h"

namespace molo {

void downsample_luma_row_scalar(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                                int columns) {
    for (int c = 0; c < columns; ++c) {
        uint32_t sum = 0;
        for (int dy = 0; dy < 8; ++dy) {
            const unsigned char* p = src + dy * stride + 8 * c;
            for (int dx = 0; dx < 8; ++dx) sum += p[dx];
        }
        out[c] = static_cast<unsigned char>(sum >> 6);
    }
}

void downsample_chroma_row_scalar(const unsigned char* src, std::ptrdiff_t stride,
                                  unsigned char* out, int pairs, bool swap) {
    const int first_out = swap ? 1 : 0;
    for (int k = 0; k < pairs; ++k) {
        uint32_t a = 0;
        uint32_t b = 0;
        for (int dy = 0; dy < 8; ++dy) {
            const unsigned char* p = src + dy * stride + 16 * k;
            for (int j = 0; j < 8; ++j) {
                a += p[2 * j];
                b += p[2 * j + 1];
            }
        }
        out[2 * k + first_out] = static_cast<unsigned char>(a >> 6);
        out[2 * k + 1 - first_out] = static_cast<unsigned char>(b >> 6);
    }
}

}  // namespace molo
