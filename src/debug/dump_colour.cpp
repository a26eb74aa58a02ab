// Colour dumps of YUV frames and planes as RGB images. Every variant reads
// the luma and the (V, U) pair of each pixel through two small accessors and
// shares one conversion.
#include <cstddef>

#include "debug/dump_writer.h"
#include "debug/yuv_to_rgb.h"
#include "molo/debug.h"

namespace {

// Luma of a flat row-major plane, and of row pointers.
template <class T>
auto flat_luma(const T* y, int width) {
    return [=](int r, int c) {
        return static_cast<float>(y[static_cast<std::size_t>(r) * width + c]);
    };
}
template <class T>
auto row_luma(T* const* y) {
    return [=](int r, int c) { return static_cast<float>(y[r][c]); };
}

// Chroma is addressed by cell (i, j), the pair shared by pixels 2i..2i+1 and
// 2j..2j+1. NV21 keeps the pairs interleaved, V first, in rows of width
// bytes: cell (i, j) starts at byte 2j of chroma row i.
auto flat_pairs(const unsigned char* vu, int width) {
    return [=](int i, int j, float& v, float& u) {
        const unsigned char* p = vu + static_cast<std::size_t>(i) * width + 2 * j;
        v = p[0];
        u = p[1];
    };
}
auto row_pairs(unsigned char* const* vu) {
    return [=](int i, int j, float& v, float& u) {
        v = vu[i][2 * j];
        u = vu[i][2 * j + 1];
    };
}
// Two half-size planes, V in plane 0 and U in plane 1.
template <class T>
auto planar_pairs(T** const* vu) {
    return [=](int i, int j, float& v, float& u) {
        v = static_cast<float>(vu[0][i][j]);
        u = static_cast<float>(vu[1][i][j]);
    };
}

// The chroma holds height / 2 rows of width / 2 cells. With an odd size the
// last pixel row or column has no cell of its own and shares the one before;
// a frame of a single row or column has no chroma and is shown as grey
// (V = U = 128).
template <class Luma, class Chroma>
int dump_rgb(char* path, int width, int height, const molo::DumpWindow& window, Luma luma,
             Chroma chroma) {
    const int cell_rows = height / 2;
    const int cell_cols = width / 2;
    return molo::dump_record(path, height, width, 'c', window,
                             [&](TIFF_IMG& img, int r, int c, int sr, int sc) {
                                 float v = 128.0f;
                                 float u = 128.0f;
                                 if (cell_rows > 0 && cell_cols > 0) {
                                     chroma(sr / 2 < cell_rows ? sr / 2 : cell_rows - 1,
                                            sc / 2 < cell_cols ? sc / 2 : cell_cols - 1, v, u);
                                 }
                                 const molo::Rgb p = molo::yuv_to_rgb(luma(sr, sc), v, u);
                                 img.color[0][r][c] = p.r;
                                 img.color[1][r][c] = p.g;
                                 img.color[2][r][c] = p.b;
                             });
}

template <class Luma, class Chroma>
int dump_rgb_whole(char* path, int width, int height, Luma luma, Chroma chroma) {
    return dump_rgb(path, width, height, molo::whole_image(height, width), luma, chroma);
}

}  // namespace

// One NV21 buffer: the chroma starts right after width x height luma bytes.
int TIFF_Save_YUV2RGB(unsigned char* nv21, int width, int height, char* path) {
    const bool sized = width > 0 && height > 0;
    const unsigned char* vu = sized ? nv21 + static_cast<std::size_t>(width) * height : nullptr;
    return dump_rgb_whole(path, width, height, flat_luma(nv21, width), flat_pairs(vu, width));
}

int TIFF_Save_YUV2RGB(unsigned char* y, unsigned char* vu, int width, int height, char* path) {
    return dump_rgb_whole(path, width, height, flat_luma(y, width), flat_pairs(vu, width));
}

int TIFF_Save_YUV2RGB(unsigned char** y, unsigned char** vu, int width, int height, char* path) {
    return dump_rgb_whole(path, width, height, row_luma(y), row_pairs(vu));
}

int TIFF_Save_YUV2RGB(unsigned char** y, unsigned char*** vu, int width, int height, char* path) {
    return dump_rgb_whole(path, width, height, row_luma(y), planar_pairs(vu));
}

int TIFF_Save_YUV2RGB(float** y, unsigned char*** vu, int width, int height, char* path) {
    return dump_rgb_whole(path, width, height, row_luma(y), planar_pairs(vu));
}

int TIFF_Save_YUV2RGB(float** y, float*** vu, int width, int height, char* path) {
    return dump_rgb_whole(path, width, height, row_luma(y), planar_pairs(vu));
}

// The chroma pair is the one of the clamped source position.
int TIFF_Save_YUV2RGB_offset(unsigned char* y, unsigned char* vu, int width, int height,
                             int row_margin, int col_margin, int row_shift, int col_shift,
                             char* path) {
    return dump_rgb(path, width, height,
                    molo::shifted_crop(height, width, row_margin, col_margin, row_shift, col_shift),
                    flat_luma(y, width), flat_pairs(vu, width));
}

int TIFF_Save_Input_NV21_to_RGB(unsigned char* y, unsigned char* vu, int width, int height,
                                char* path) {
    return TIFF_Save_YUV2RGB(y, vu, width, height, path);
}

int TIFF_Save_Input_NV21_to_RGB(unsigned char** y, unsigned char** vu, int width, int height,
                                char* path) {
    return TIFF_Save_YUV2RGB(y, vu, width, height, path);
}
