// Grey dumps of a shifted crop: the output keeps the full size, only the
// inner window inside the margins is written, and each written pixel shows
// the source pixel at its position plus the shift, clamped into the image.
#include <cstddef>

#include "debug/dump_writer.h"
#include "molo/debug.h"
#include "support/float_to_int.h"

int TIFF_SaveY_Offset(unsigned char** src, int width, int height, int row_margin, int col_margin,
                      int row_shift, int col_shift, char* path) {
    return molo::dump_grey(
        path, width, height,
        molo::shifted_crop(height, width, row_margin, col_margin, row_shift, col_shift),
        [=](int r, int c) { return src[r][c]; });
}

int TIFF_SaveY_Offset(unsigned char* src, int width, int height, int row_margin, int col_margin,
                      int row_shift, int col_shift, char* path) {
    return molo::dump_grey(
        path, width, height,
        molo::shifted_crop(height, width, row_margin, col_margin, row_shift, col_shift),
        [=](int r, int c) { return src[static_cast<std::size_t>(r) * width + c]; });
}

// The value is truncated to unsigned (NaN and negatives give 0, values of
// 2^32 and more saturate) and stored as its low byte: 300.7 stores 44.
int TIFF_SaveY_Offset(float** src, int width, int height, int row_margin, int col_margin,
                      int row_shift, int col_shift, char* path) {
    return molo::dump_grey(
        path, width, height,
        molo::shifted_crop(height, width, row_margin, col_margin, row_shift, col_shift),
        [=](int r, int c) { return static_cast<unsigned char>(molo::to_unsigned_sat(src[r][c])); });
}
