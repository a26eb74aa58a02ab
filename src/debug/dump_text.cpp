// Text listings of a plane, one line per value: row, column, value.
#include <cstddef>
#include <cstdio>

#include "debug/dump_writer.h"
#include "molo/debug.h"

namespace {

// A size of zero or less lists nothing: the file is left empty.
template <class Line>
int write_listing(char* path, int width, int height, Line line) {
    FILE* fp = molo::open_debug_file(path, "wt");
    if (fp == nullptr) return molo::kDumpFailed;
    for (int r = 0; r < height; ++r) {
        for (int c = 0; c < width; ++c) line(fp, r, c);
    }
    return std::fclose(fp);
}

}  // namespace

int Write_Text(float** src, int width, int height, char* path) {
    return write_listing(path, width, height, [=](FILE* fp, int r, int c) {
        std::fprintf(fp, "%d %d %f\n", r, c, static_cast<double>(src[r][c]));
    });
}

int Write_Text(int* src, int width, int height, char* path) {
    return write_listing(path, width, height, [=](FILE* fp, int r, int c) {
        std::fprintf(fp, "%d %d %d\n", r, c, src[static_cast<std::size_t>(r) * width + c]);
    });
}
