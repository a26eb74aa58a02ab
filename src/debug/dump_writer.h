// The common path of every dump to a TIFF file: open the file, create a
// record of the output size, fill the pixels of a window from the source,
// write the record, free it and close the file. The dump functions differ
// only in how one output pixel is computed from the source, which they pass
// in as a callable.
#ifndef MOLO_DEBUG_DUMP_WRITER_H
#define MOLO_DEBUG_DUMP_WRITER_H

#include <cstdio>

#include "molo/debug.h"

namespace molo {

// Result of a dump that could not be made: the file could not be opened, the
// record could not be created (the TIFF module says why) or not written.
constexpr int kDumpFailed = EOF;

// The output pixels a dump writes, rows [row_begin, row_end) and columns
// [col_begin, col_end), and the shift from an output position to its source
// position, which is clamped into the source image.
struct DumpWindow {
    int row_begin;
    int row_end;
    int col_begin;
    int col_end;
    int row_shift;
    int col_shift;
};

inline DumpWindow whole_image(int height, int width) { return {0, height, 0, width, 0, 0}; }

// Rows row_margin .. height - row_margin - 1 and columns col_margin ..
// width - col_margin - 1, cut to the image when a margin is negative.
DumpWindow shifted_crop(int height, int width, int row_margin, int col_margin, int row_shift,
                        int col_shift);

// Index + shift, clamped to 0 .. size - 1 (no overflow for any shift).
inline int clamped_index(int index, int shift, int size) {
    const long long v = static_cast<long long>(index) + shift;
    return v < 0 ? 0 : v >= size ? size - 1 : static_cast<int>(v);
}

// Opens a dump or read-back file; when it cannot be opened, says so on
// stderr and returns null.
FILE* open_debug_file(const char* path, const char* mode);

// Writes and frees the record and closes the file: the result of fclose, or
// kDumpFailed when the record could not be written.
int finish_dump(FILE* fp, TIFF_IMG* img);

// Creates a height x width record of the given type and calls
// store(img, r, c, source_row, source_col) for every output pixel (r, c) of
// the window, row by row. Pixels outside the window keep the zeros of the
// freshly allocated record. A size the TIFF module refuses leaves the source
// untouched, closes the (empty) file and gives kDumpFailed.
template <class Store>
int dump_record(const char* path, int height, int width, char type, const DumpWindow& window,
                Store store) {
    FILE* fp = open_debug_file(path, "wb");
    if (fp == nullptr) return kDumpFailed;
    TIFF_IMG img;
    if (get_TIFF(&img, height, width, type) != 0) {
        std::fclose(fp);
        return kDumpFailed;
    }
    for (int r = window.row_begin; r < window.row_end; ++r) {
        const int sr = clamped_index(r, window.row_shift, height);
        for (int c = window.col_begin; c < window.col_end; ++c) {
            store(img, r, c, sr, clamped_index(c, window.col_shift, width));
        }
    }
    return finish_dump(fp, &img);
}

// A grey dump: grey(source_row, source_col) gives the output byte.
template <class Grey>
int dump_grey(const char* path, int width, int height, const DumpWindow& window, Grey grey) {
    return dump_record(
        path, height, width, 'g', window,
        [&grey](TIFF_IMG& img, int r, int c, int sr, int sc) { img.mono[r][c] = grey(sr, sc); });
}

}  // namespace molo

#endif  // MOLO_DEBUG_DUMP_WRITER_H
