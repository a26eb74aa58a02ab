#include "debug/dump_writer.h"

#include <cerrno>
#include <cstring>

#include "debug/diagnostics.h"

namespace molo {
namespace {

// [margin, size - margin) within [0, size).
void margin_span(int size, int margin, int& begin, int& end) {
    const long long b = margin;
    const long long e = static_cast<long long>(size) - margin;
    begin = b < 0 ? 0 : static_cast<int>(b < size ? b : size);
    end = e > size ? size : static_cast<int>(e < 0 ? 0 : e);
}

}  // namespace

DumpWindow shifted_crop(int height, int width, int row_margin, int col_margin, int row_shift,
                        int col_shift) {
    DumpWindow w{0, 0, 0, 0, row_shift, col_shift};
    margin_span(height, row_margin, w.row_begin, w.row_end);
    margin_span(width, col_margin, w.col_begin, w.col_end);
    return w;
}

FILE* open_debug_file(const char* path, const char* mode) {
    if (path == nullptr) {
        print_diagnostic("Error! no file name given\n");
        return nullptr;
    }
    FILE* fp = std::fopen(path, mode);
    if (fp == nullptr) {
        print_diagnostic("Error! cannot open %s: %s\n", path, std::strerror(errno));
    }
    return fp;
}

int finish_dump(FILE* fp, TIFF_IMG* img) {
    const int written = write_TIFF(fp, img);
    free_TIFF(img);
    const int closed = std::fclose(fp);
    return written != 0 ? kDumpFailed : closed;
}

}  // namespace molo
