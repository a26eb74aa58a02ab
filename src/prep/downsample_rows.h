// Row kernels of the 8 x 8 box means that reduce a frame to the working
// images, one output row per call. Each instruction set has its own kernel
// file; the scalar kernels are the reference every vector kernel must match
// bit for bit, and the fallback where no vector unit is known. Which set the
// detector uses is fixed at compile time in downsample_rows_dispatch.cpp.
#ifndef MOLO_PREP_DOWNSAMPLE_ROWS_H
#define MOLO_PREP_DOWNSAMPLE_ROWS_H

#include <cstddef>

#if defined(__SSE2__)
#define MOLO_DOWNSAMPLE_SSE2 1
#endif
#if defined(__ARM_NEON) || defined(__aarch64__)
#define MOLO_DOWNSAMPLE_NEON 1
#endif

namespace molo {

// out[c] = (sum of the 64 bytes src[dy * stride + 8 * c + dx], dy and dx in
// 0 .. 7) >> 6, for c in [0, columns). Reads exactly the 8 rows of 8 * columns
// bytes starting at src.
using LumaRowKernel = void (*)(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                               int columns);

// For every pair k in [0, pairs): A and B are the sums of the first and the
// second bytes of the 8 x 8 source pairs that start at src + 16 * k (8 rows
// of 16 bytes); out[2k] = A >> 6 and out[2k + 1] = B >> 6, or the other way
// round when `swap` is set. Reads exactly 8 rows of 16 * pairs bytes.
using ChromaRowKernel = void (*)(const unsigned char* src, std::ptrdiff_t stride,
                                 unsigned char* out, int pairs, bool swap);

struct DownsampleRows {
    const char* name;
    LumaRowKernel luma;
    ChromaRowKernel chroma;
};

void downsample_luma_row_scalar(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                                int columns);
void downsample_chroma_row_scalar(const unsigned char* src, std::ptrdiff_t stride,
                                  unsigned char* out, int pairs, bool swap);
#if MOLO_DOWNSAMPLE_SSE2
void downsample_luma_row_sse2(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                              int columns);
void downsample_chroma_row_sse2(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                                int pairs, bool swap);
#endif
#if MOLO_DOWNSAMPLE_NEON
void downsample_luma_row_neon(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                              int columns);
void downsample_chroma_row_neon(const unsigned char* src, std::ptrdiff_t stride, unsigned char* out,
                                int pairs, bool swap);
#endif

// The kernel set DownSampling uses on this target.
const DownsampleRows& downsample_rows();

// Every kernel set built for this target, the scalar reference first and the
// one DownSampling uses last.
struct DownsampleRowSets {
    const DownsampleRows* const* sets;
    int count;
};
DownsampleRowSets all_downsample_rows();

}  // namespace molo

#endif  // MOLO_PREP_DOWNSAMPLE_ROWS_H
