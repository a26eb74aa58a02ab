// Grey dumps of whole planes: bytes as they are, wider values clamped or
// scaled into a byte, and two int planes side by side.
#include <climits>
#include <cstddef>
#include <cstdio>

#include "debug/diagnostics.h"
#include "debug/dump_writer.h"
#include "molo/debug.h"
#include "support/float_to_int.h"

namespace {

unsigned char clamp_byte(int v) {
    return static_cast<unsigned char>(v < 0 ? 0 : v > 255 ? 255 : v);
}

// Element (r, c) of a flat row-major plane.
template <class T>
T at(const T* src, int width, int r, int c) {
    return src[static_cast<std::size_t>(r) * width + c];
}

template <class Grey>
int dump_whole(char* path, int width, int height, Grey grey) {
    return molo::dump_grey(path, width, height, molo::whole_image(height, width), grey);
}

}  // namespace

int TIFF_SaveY(unsigned char* src, int width, int height, char* path) {
    return dump_whole(path, width, height, [=](int r, int c) { return at(src, width, r, c); });
}

int TIFF_SaveY(unsigned char** src, int width, int height, char* path) {
    return dump_whole(path, width, height, [=](int r, int c) { return src[r][c]; });
}

int TIFF_SaveY(int* src, int width, int height, char* path) {
    return dump_whole(path, width, height,
                      [=](int r, int c) { return clamp_byte(at(src, width, r, c)); });
}

// The values are read as signed: 0x80000000 and above count as negative.
int TIFF_SaveY(unsigned int* src, int width, int height, char* path) {
    return dump_whole(path, width, height, [=](int r, int c) {
        return clamp_byte(static_cast<int>(at(src, width, r, c)));
    });
}

// Truncated toward zero, then clamped; NaN gives 0.
int TIFF_SaveY(float* src, int width, int height, char* path) {
    return dump_whole(path, width, height, [=](int r, int c) {
        return clamp_byte(molo::to_int_sat(at(src, width, r, c)));
    });
}

int TIFF_SaveY(float** src, int width, int height, char* path) {
    return dump_whole(path, width, height,
                      [=](int r, int c) { return clamp_byte(molo::to_int_sat(src[r][c])); });
}

// The truncating quotient, wrapped to its low byte. It is taken in 64 bits,
// so INT_MIN / -1 is 2^31 and stores 0. A divisor of 0 writes no file.
int TIFF_SaveY_Scale(int* src, int width, int height, char* path, int divisor) {
    if (divisor == 0) {
        molo::print_diagnostic("Error! divisor must not be 0\n");
        return molo::kDumpFailed;
    }
    return dump_whole(path, width, height, [=](int r, int c) {
        return static_cast<unsigned char>(static_cast<long long>(at(src, width, r, c)) / divisor);
    });
}

// Output column 2k holds the low byte of plane 0 at column k, column 2k + 1
// that of plane 1. A doubled width beyond the int range is refused like any
// unusable size.
int TIFF_SaveUV(int*** src, int width, int height, char* path) {
    const int out_width = width <= INT_MAX / 2 ? 2 * width : 0;
    return dump_whole(path, out_width, height, [=](int r, int c) {
        return static_cast<unsigned char>(src[c & 1][r][c >> 1]);
    });
}
