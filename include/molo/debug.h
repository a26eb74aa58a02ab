// Debug image files: a small uncompressed TIFF reader and writer over the
// TIFF_IMG record, and functions that dump working planes and frames to TIFF
// or text files and read test frames back. Nothing in the detector calls them;
// they are for developers inspecting a frame by hand.
//
// Diagnostics take one of two channels. Standard error: get_TIFF, read_TIFF,
// write_TIFF, every dump writer (TIFF_Save*, Write_Text) and the read-back
// functions for a file they cannot open or read. The library's log (error
// priority): TIFF_readY and TIFF_readYUV for a file of the wrong size or
// type.
#ifndef MOLO_DEBUG_H
#define MOLO_DEBUG_H

#include <cstdio>

#include "molo/export.h"

// An image in memory. 'g' grey and 'p' palette images use mono; 'c' (RGB)
// images use color[0..2] = R, G, B; '4' (four-sample) images use color[0..2]
// for their first three samples and mono for the fourth. Every plane is
// height row pointers into one height x width byte block. A 'p' image's
// palette is cmap: 256 row pointers into one 768-byte block, three bytes
// (R, G, B) per entry. Pointers a type does not use are null.
struct TIFF_IMG {
    int height;
    int width;
    char TIFF_type;
    unsigned char** mono;
    unsigned char** color[3];
    char compress_type;
    unsigned char** cmap;
};

// Sets the size and type, compress_type 'u', and allocates the zero-filled
// planes of the type. 0 on success; 1 (with a message on stderr) for a
// non-positive size, an unsupported type or a failed allocation.
MOLO_EXPORT int get_TIFF(TIFF_IMG* img, int height, int width, char type);
// Releases the planes (and palette) of the record's type.
MOLO_EXPORT void free_TIFF(TIFF_IMG* img);
// Writes the record as one big-endian, uncompressed TIFF image from the
// stream's current position, which is taken as the start of the file. 0 on
// success, 1 on any failure, with the failing step and the reason on stderr.
MOLO_EXPORT int write_TIFF(FILE* fp, TIFF_IMG* img);
// Reads the first image of an uncompressed, 8-bit grey, palette or RGB TIFF
// file (either byte order) into a newly allocated record; free it with
// free_TIFF. 0 on success; 1 for any file it cannot read, whatever the file
// holds, and then the record is left as it was. Every refusal has a message
// on stderr except that of a file without a TIFF header mark and 42.
// Images over 2^20 pixels a side or 256 MiB of pixels are refused. Reentrant.
MOLO_EXPORT int read_TIFF(FILE* fp, TIFF_IMG* img);

// Dump writers: source first, then width and height, then any further
// integers, the file path last. Each returns the result of closing the file,
// or EOF (with a message on stderr) when the file cannot be opened or the
// image cannot be created or written; a non-positive size leaves the source
// unread and the file empty. Wider values become bytes as follows: int
// (unsigned taken as signed) and float are clamped to 0 .. 255, floats after
// truncation toward zero, NaN giving 0.
MOLO_EXPORT int TIFF_SaveY(unsigned char* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(unsigned char** src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(int* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(unsigned int* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(float* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(float** src, int width, int height, char* path);
// The low byte of value / divisor (INT_MIN / -1 stores 0); a divisor of 0
// writes no file and gives EOF.
MOLO_EXPORT int TIFF_SaveY_Scale(int* src, int width, int height, char* path, int divisor);
// Two planes side by side in a 2 x width image: column 2k holds the low byte
// of plane 0 at column k, column 2k + 1 that of plane 1.
MOLO_EXPORT int TIFF_SaveUV(int*** src, int width, int height, char* path);

// Shifted crop: rows row_margin .. height-row_margin-1 and columns
// col_margin .. width-col_margin-1 of the output take the source pixel at
// (r + row_shift, c + col_shift), clamped into the image; the margins stay 0.
// Floats are truncated to unsigned (NaN and negatives 0, saturating at
// 2^32 - 1) and stored as their low byte.
MOLO_EXPORT int TIFF_SaveY_Offset(unsigned char** src, int width, int height, int row_margin,
                                  int col_margin, int row_shift, int col_shift, char* path);
MOLO_EXPORT int TIFF_SaveY_Offset(unsigned char* src, int width, int height, int row_margin,
                                  int col_margin, int row_shift, int col_shift, char* path);
MOLO_EXPORT int TIFF_SaveY_Offset(float** src, int width, int height, int row_margin,
                                  int col_margin, int row_shift, int col_shift, char* path);

// Colour dumps of a YUV frame (chroma V before U) as an RGB image. The
// chroma holds height / 2 rows of width / 2 (V, U) pairs, interleaved in rows
// of width bytes or as two half-size planes (V, then U); with an odd size the
// last row or column shares the pair before it, and a frame one pixel high or
// wide is shown grey.
MOLO_EXPORT int TIFF_Save_YUV2RGB(unsigned char* nv21, int width, int height, char* path);
MOLO_EXPORT int TIFF_Save_YUV2RGB(unsigned char* y, unsigned char* vu, int width, int height,
                                  char* path);
MOLO_EXPORT int TIFF_Save_YUV2RGB(unsigned char** y, unsigned char** vu, int width, int height,
                                  char* path);
MOLO_EXPORT int TIFF_Save_YUV2RGB(unsigned char** y, unsigned char*** vu, int width, int height,
                                  char* path);
MOLO_EXPORT int TIFF_Save_YUV2RGB(float** y, unsigned char*** vu, int width, int height,
                                  char* path);
MOLO_EXPORT int TIFF_Save_YUV2RGB(float** y, float*** vu, int width, int height, char* path);
MOLO_EXPORT int TIFF_Save_YUV2RGB_offset(unsigned char* y, unsigned char* vu, int width, int height,
                                         int row_margin, int col_margin, int row_shift,
                                         int col_shift, char* path);
MOLO_EXPORT int TIFF_Save_Input_NV21_to_RGB(unsigned char* y, unsigned char* vu, int width,
                                            int height, char* path);
MOLO_EXPORT int TIFF_Save_Input_NV21_to_RGB(unsigned char** y, unsigned char** vu, int width,
                                            int height, char* path);

// Read-back: a grey file into a flat plane, a colour file into a flat luma
// plane and an NV21 chroma plane (height / 2 rows of width bytes, filled from
// whole 2 x 2 blocks; with an odd width the last byte of a row is left as it
// was). A file of another size or type is reported on the log, a file that
// cannot be opened or read on stderr (as read_TIFF reports it: silently for
// a file without the TIFF mark); either leaves the buffers untouched.
// 0 on success, 1 otherwise.
MOLO_EXPORT int TIFF_readY(unsigned char* y, int width, int height, char* path);
MOLO_EXPORT int TIFF_readYUV(unsigned char* y, unsigned char* vu, int width, int height,
                             char* path);

// Text listings, one line per value: row, column, value. A non-positive
// size lists nothing; EOF when the file cannot be opened.
MOLO_EXPORT int Write_Text(float** src, int width, int height, char* path);
MOLO_EXPORT int Write_Text(int* src, int width, int height, char* path);

#endif  // MOLO_DEBUG_H
