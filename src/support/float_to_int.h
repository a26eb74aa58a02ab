// Float-to-int conversion as the 32-bit ARM target performs it: truncation
// toward zero, NaN gives 0, values beyond the int range saturate. The host's
// own conversion of an out-of-range value is undefined, so every conversion
// whose range is not guaranteed goes through here.
#ifndef MOLO_SUPPORT_FLOAT_TO_INT_H
#define MOLO_SUPPORT_FLOAT_TO_INT_H

#include <climits>

namespace molo {

inline int to_int_sat(double v) {
    if (v != v) return 0;
    if (v >= 2147483647.0) return INT_MAX;
    if (v <= -2147483648.0) return INT_MIN;
    return static_cast<int>(v);
}

inline int to_int_sat(float v) { return to_int_sat(static_cast<double>(v)); }

// The same conversion to unsigned: NaN and values below 0 give 0, values
// beyond the range saturate at UINT_MAX.
inline unsigned to_unsigned_sat(double v) {
    if (!(v > 0.0)) return 0;
    if (v >= 4294967295.0) return UINT_MAX;
    return static_cast<unsigned>(v);
}

}  // namespace molo

#endif  // MOLO_SUPPORT_FLOAT_TO_INT_H
