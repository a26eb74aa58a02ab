#include "debug/yuv_to_rgb.h"

namespace molo {
namespace {

// Above 255 gives 255, below 0 gives 0, anything else is truncated; NaN
// (possible only from float planes) gives 0.
unsigned char channel(double value) {
    const float f = static_cast<float>(value);
    if (f > 255.0f) return 255;
    if (!(f >= 0.0f)) return 0;
    return static_cast<unsigned char>(f);
}

}  // namespace

Rgb yuv_to_rgb(float y, float v, float u) {
    const float dv = v - 128.0f;
    const float du = u - 128.0f;
    return {channel(y + 1.402 * dv), channel(y - 0.344 * du - 0.714 * dv), channel(y + 1.772 * du)};
}

}  // namespace molo
