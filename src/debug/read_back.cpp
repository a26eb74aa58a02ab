// Reading test frames back from TIFF files: a grey image into a luma plane,
// an RGB image into an NV21 luma plane and chroma plane.
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "debug/diagnostics.h"
#include "debug/dump_writer.h"
#include "molo/debug.h"

namespace {

// Reads the file into img and checks its size and type. 0 with img holding
// the image, or 1 with nothing held and the reason said.
int read_checked(char* path, int width, int height, char type, TIFF_IMG* img) {
    FILE* fp = molo::open_debug_file(path, "rb");
    if (fp == nullptr) return 1;
    const int failed = read_TIFF(fp, img);
    std::fclose(fp);
    if (failed != 0) return 1;
    if (img->height != height || img->width != width) {
        molo::log_diagnostic("Error! wrong width or wrong height\n");
        free_TIFF(img);
        return 1;
    }
    if (img->TIFF_type != type) {
        molo::log_diagnostic(type == 'g' ? "Error! not a grey image\n"
                                         : "Error! not a colour image\n");
        free_TIFF(img);
        return 1;
    }
    return 0;
}

unsigned char luma_of(unsigned char r, unsigned char g, unsigned char b) {
    return static_cast<unsigned char>(0.587 * static_cast<float>(g) +
                                      0.299 * static_cast<float>(r) +
                                      0.114 * static_cast<float>(b));
}

// Integer mean of the 2 x 2 block at (2i, 2j) of one plane.
int block_mean(unsigned char** plane, int i, int j) {
    const unsigned char* top = plane[2 * i] + 2 * j;
    const unsigned char* bottom = plane[2 * i + 1] + 2 * j;
    return (top[0] + top[1] + bottom[0] + bottom[1]) >> 2;
}

}  // namespace

int TIFF_readY(unsigned char* y, int width, int height, char* path) {
    TIFF_IMG img;
    if (read_checked(path, width, height, 'g', &img) != 0) return 1;
    for (int r = 0; r < height; ++r) {
        std::memcpy(y + static_cast<std::size_t>(r) * width, img.mono[r],
                    static_cast<std::size_t>(width));
    }
    free_TIFF(&img);
    return 0;
}

// Chroma comes from whole 2 x 2 blocks: with an odd size the last row or
// column only contributes to the luma, and the last byte of each chroma row
// is left as it was. vu holds height / 2 rows of width bytes.
int TIFF_readYUV(unsigned char* y, unsigned char* vu, int width, int height, char* path) {
    TIFF_IMG img;
    if (read_checked(path, width, height, 'c', &img) != 0) return 1;
    unsigned char** red = img.color[0];
    unsigned char** green = img.color[1];
    unsigned char** blue = img.color[2];
    for (int r = 0; r < height; ++r) {
        unsigned char* out = y + static_cast<std::size_t>(r) * width;
        for (int c = 0; c < width; ++c) out[c] = luma_of(red[r][c], green[r][c], blue[r][c]);
    }
    for (int i = 0; i < height / 2; ++i) {
        unsigned char* out = vu + static_cast<std::size_t>(i) * width;
        for (int j = 0; j < width / 2; ++j) {
            const int mr = block_mean(red, i, j);
            const int mg = block_mean(green, i, j);
            const int mb = block_mean(blue, i, j);
            out[2 * j] = static_cast<unsigned char>(0.499 * mr - 0.418 * mg - 0.0813 * mb + 128);
            out[2 * j + 1] =
                static_cast<unsigned char>(-0.169 * mr - 0.331 * mg + 0.499 * mb + 128);
        }
    }
    free_TIFF(&img);
    return 0;
}
