// Integer arithmetic of the corner stage. Every figure is a 32-bit integer
// that wraps on overflow, as on the device; the wrap is carried out in
// unsigned arithmetic so that it is well defined on every compiler.
#ifndef MOLO_FEATURES_HARRIS_RESPONSE_H
#define MOLO_FEATURES_HARRIS_RESPONSE_H

#include <cstdint>

namespace molo {

// The two's-complement reading of a 32-bit pattern.
inline int32_t wrap_int32(uint32_t bits) {
    if (bits <= 0x7FFFFFFFu) return static_cast<int32_t>(bits);
    return static_cast<int32_t>(bits - 0x80000000u) + INT32_MIN;
}

// Harris measure det - 0.04 trace^2, scaled by 100: ((a b - c c) 25 - (a + b)^2) 4,
// modulo 2^32. a and b are the smoothed squared derivatives; c is the smoothed
// doubled cross product, so the determinant takes four times the usual
// cross-term square. Strong diagonal gradients overflow and wrap.
inline int harris_response(int a, int b, int c) {
    const uint32_t ua = static_cast<uint32_t>(a);
    const uint32_t ub = static_cast<uint32_t>(b);
    const uint32_t uc = static_cast<uint32_t>(c);
    const uint32_t det = ua * ub - uc * uc;
    const uint32_t trace = ua + ub;
    return wrap_int32((det * 25u - trace * trace) * 4u);
}

}  // namespace molo

#endif  // MOLO_FEATURES_HARRIS_RESPONSE_H
