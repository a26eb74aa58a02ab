// Area-averaging rescale of an interleaved chroma plane. The luma pointers are
// accepted and left alone. Only out_height / 2 - 1 destination chroma rows are
// written: the last one never is, a one-row shortfall kept on purpose.
#include "molo/detector.h"
#include "prep/parallel_rows.h"
#include "support/float_to_int.h"
#include "support/log.h"

void Molo_FingerDetect::resize(unsigned char* /*in_y*/, unsigned char* in_vu,
                               unsigned char* /*out_y*/, unsigned char* out_vu, int in_stride,
                               int in_width, int in_height, int out_width, int out_height) {
    const float scale_x = static_cast<float>(in_width) / static_cast<float>(out_width);
    const float scale_y = static_cast<float>(in_height) / static_cast<float>(out_height);
    const int in_pairs = in_width / 2;
    const int in_rows = in_height / 2;
    const int out_pairs = out_width / 2;
    const int row_count = out_height / 2 - 1;

    // Block bound: (index * scale + 0.5) in single precision, truncated.
    auto bound = [](int index, float scale) {
        return molo::to_int_sat(static_cast<float>(index) * scale + 0.5f);
    };

    auto body = [&](int r) {
        int y0 = bound(r, scale_y);
        int y1 = bound(r + 1, scale_y);
        if (y0 > in_rows - 1) y0 = in_rows - 1;
        if (y1 > in_rows) y1 = in_rows;
        if (y0 < 0) y0 = 0;
        if (y1 < 0) y1 = 0;
        for (int c = 0; c < out_pairs; ++c) {
            int x0 = bound(c, scale_x);
            int x1 = bound(c + 1, scale_x);
            if (x0 > in_pairs - 1) x0 = in_pairs - 1;
            if (x1 > in_pairs) x1 = in_pairs;
            if (x0 < 0) x0 = 0;
            if (x1 < 0) x1 = 0;
            int a = 0;
            int b = 0;
            int n = 0;
            if (y0 < y1) {
                for (int y = y0; y < y1; ++y) {
                    const unsigned char* src = in_vu + static_cast<long>(y) * in_stride;
                    if (x0 < x1) {
                        for (int x = x0; x < x1; ++x) {
                            a += src[2 * x];
                            b += src[2 * x + 1];
                        }
                    }
                    n += x1 - x0;
                }
            }
            if (n > 0) {
                unsigned char* dst = out_vu + static_cast<long>(r) * out_width + 2 * c;
                dst[0] = static_cast<unsigned char>(a / n);
                dst[1] = static_cast<unsigned char>(b / n);
            } else {
                molo::log_print(molo::kLogError, "Error! maybe?");
            }
        }
    };
    molo::parallel_rows(row_count, body);
}
