// Reduces the frame to the working images by 8 x 8 box means: a working luma
// sample is the floor of the mean of 8 x 8 source samples, a working chroma
// pair the floor of the mean of 8 x 8 source pairs (16 x 16 pixels). Only the
// top-left 8 * down_width columns and 8 * down_height rows are read; the
// remainder of the frame is cropped, not centred.
#include <cstdint>

#include "molo/detector.h"
#include "prep/parallel_rows.h"

void Molo_FingerDetect::DownSampling(int stride, int ds_mode) {
    const int w = down_width;
    const long pitch = stride;

    auto luma_row = [&](int r) {
        if (w <= 0) return;
        const unsigned char* block_row = src_y + 8L * r * pitch;
        unsigned char* out = down_y + static_cast<long>(r) * w;
        for (int c = 0; c < w; ++c) {
            uint32_t sum = 0;
            for (int dy = 0; dy < 8; ++dy) {
                const unsigned char* p = block_row + dy * pitch + 8 * c;
                for (int dx = 0; dx < 8; ++dx) sum += p[dx];
            }
            out[c] = static_cast<unsigned char>(sum >> 6);
        }
    };

    // first_out / second_out: where the first and second source byte of a pair
    // land in the working pair (0, 1 keeps the order; 1, 0 swaps it).
    auto chroma_row = [&](int r, int first_out, int second_out) {
        if (w <= 1) return;
        const unsigned char* block_row = src_vu + 8L * r * pitch;
        unsigned char* out = down_vu + static_cast<long>(r) * w;
        for (int k = 0; k < w / 2; ++k) {
            uint32_t a = 0;
            uint32_t b = 0;
            for (int dy = 0; dy < 8; ++dy) {
                const unsigned char* p = block_row + dy * pitch + 16 * k;
                for (int j = 0; j < 8; ++j) {
                    a += p[2 * j];
                    b += p[2 * j + 1];
                }
            }
            out[2 * k + first_out] = static_cast<unsigned char>(a >> 6);
            out[2 * k + second_out] = static_cast<unsigned char>(b >> 6);
        }
    };

    molo::parallel_rows(down_height, luma_row);
    if (ds_mode == 1) {
        auto keep = [&](int r) { chroma_row(r, 0, 1); };
        molo::parallel_rows(down_height / 2, keep);
    } else {
        auto swap = [&](int r) { chroma_row(r, 1, 0); };
        molo::parallel_rows(down_height / 2, swap);
    }
}
