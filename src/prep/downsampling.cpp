// Reduces the frame to the working images by 8 x 8 box means: a working luma
// sample is the floor of the mean of 8 x 8 source samples, a working chroma
// pair the floor of the mean of 8 x 8 source pairs (16 x 16 pixels). Only the
// top-left 8 * down_width columns and 8 * down_height rows are read; the
// remainder of the frame is cropped, not centred (pinned by the padded
// odd-sized clip of PlatformDigest.SyntheticClipsMatchTheCommittedDigest).
// The row kernels are the vector ones of the target (downsample_rows.h),
// which match the scalar reference bit for bit.
#include <cstddef>
#include <cstdint>

#include "molo/detector.h"
#include "prep/downsample_rows.h"
#include "prep/parallel_rows.h"

void Molo_FingerDetect::DownSampling(int stride, int ds_mode) {
    const int w = down_width;
    const std::ptrdiff_t pitch = stride;
    const molo::DownsampleRows& rows = molo::downsample_rows();

    auto luma_row = [&](int r) {
        if (w <= 0) return;
        rows.luma(src_y + 8 * r * pitch, pitch, down_y + static_cast<std::ptrdiff_t>(r) * w, w);
    };
    // Any mode but 1 swaps the two bytes of every pair.
    const bool swap = ds_mode != 1;
    auto chroma_row = [&](int r) {
        if (w <= 1) return;
        rows.chroma(src_vu + 8 * r * pitch, pitch, down_vu + static_cast<std::ptrdiff_t>(r) * w,
                    w / 2, swap);
    };

    // A working row of either plane reads 8 source rows of 8 * w bytes.
    const std::int64_t row_bytes = 64 * static_cast<std::int64_t>(w);
    molo::parallel_rows(down_height, luma_row, row_bytes);
    molo::parallel_rows(down_height / 2, chroma_row, row_bytes);
}
