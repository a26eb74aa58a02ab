// The one place that picks the downsampling row kernels: the vector set of
// the instruction set the library is compiled for, else the scalar reference.
#include "prep/downsample_rows.h"

namespace molo {
namespace {

const DownsampleRows kScalar{"scalar", downsample_luma_row_scalar, downsample_chroma_row_scalar};
#if MOLO_DOWNSAMPLE_SSE2
const DownsampleRows kSse2{"sse2", downsample_luma_row_sse2, downsample_chroma_row_sse2};
#endif
#if MOLO_DOWNSAMPLE_NEON
const DownsampleRows kNeon{"neon", downsample_luma_row_neon, downsample_chroma_row_neon};
#endif

const DownsampleRows* const kAll[] = {
    &kScalar,
#if MOLO_DOWNSAMPLE_SSE2
    &kSse2,
#endif
#if MOLO_DOWNSAMPLE_NEON
    &kNeon,
#endif
};

}  // namespace

const DownsampleRows& downsample_rows() {
#if MOLO_DOWNSAMPLE_SSE2
    return kSse2;
#elif MOLO_DOWNSAMPLE_NEON
    return kNeon;
#else
    return kScalar;
#endif
}

DownsampleRowSets all_downsample_rows() {
    return {kAll, static_cast<int>(sizeof kAll / sizeof kAll[0])};
}

}  // namespace molo
