// Debug image files: a small uncompressed TIFF reader and writer over the
// TIFF_IMG record, and functions that dump working planes and frames to TIFF
// or text files and read test frames back. Nothing in the detector calls them;
// they are for developers inspecting a frame by hand.
#ifndef MOLO_DEBUG_H
#define MOLO_DEBUG_H

#include <cstdio>

#include "molo/export.h"

// An image in memory. 'g' grey and 'p' palette images use mono; 'c' (RGB)
// images use color[0..2] = R, G, B. Every plane is height row pointers into
// one height x width byte block. A 'p' image's palette is cmap: 256 row
// pointers into one 768-byte block, three bytes per entry.
struct TIFF_IMG {
  int height;
  int width;
  char TIFF_type;
  unsigned char** mono;
  unsigned char** color[3];
  char compress_type;
  unsigned char** cmap;
};

// Sets the size and type, compress_type 'u', and allocates the planes of the
// type. 0 on success; 1 (with a message on stderr) for a non-positive size or
// an unsupported type.
MOLO_EXPORT int get_TIFF(TIFF_IMG* img, int height, int width, char type);
// Releases the planes (and palette) of the record's type.
MOLO_EXPORT void free_TIFF(TIFF_IMG* img);
// Writes the record as one big-endian, uncompressed TIFF image. 0 on success,
// 1 on any failure, with the failing step and the reason on stderr.
MOLO_EXPORT int write_TIFF(FILE* fp, TIFF_IMG* img);
// Reads the first image of an uncompressed TIFF file (either byte order) into
// a newly allocated record. 0 on success; 1 with a message on stderr for any
// file it cannot read, whatever the file holds.
MOLO_EXPORT int read_TIFF(FILE* fp, TIFF_IMG* img);

// Dump writers: source first, then width and height, then any further
// integers, the file path last. Each returns the result of closing the file.
MOLO_EXPORT int TIFF_SaveY(unsigned char* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(unsigned char** src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(int* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(unsigned int* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(float* src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY(float** src, int width, int height, char* path);
MOLO_EXPORT int TIFF_SaveY_Scale(int* src, int width, int height, char* path, int divisor);
MOLO_EXPORT int TIFF_SaveUV(int*** src, int width, int height, char* path);

// Shifted crop: rows row_margin .. height-row_margin-1 and columns
// col_margin .. width-col_margin-1 of the output take the source pixel at
// (r + row_shift, c + col_shift), clamped into the image.
MOLO_EXPORT int TIFF_SaveY_Offset(unsigned char** src, int width, int height, int row_margin,
                                  int col_margin, int row_shift, int col_shift, char* path);
MOLO_EXPORT int TIFF_SaveY_Offset(unsigned char* src, int width, int height, int row_margin,
                                  int col_margin, int row_shift, int col_shift, char* path);
MOLO_EXPORT int TIFF_SaveY_Offset(float** src, int width, int height, int row_margin,
                                  int col_margin, int row_shift, int col_shift, char* path);

// Colour dumps of a YUV frame (chroma V before U) as an RGB image.
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
MOLO_EXPORT int TIFF_Save_YUV2RGB_offset(unsigned char* y, unsigned char* vu, int width,
                                         int height, int row_margin, int col_margin,
                                         int row_shift, int col_shift, char* path);
MOLO_EXPORT int TIFF_Save_Input_NV21_to_RGB(unsigned char* y, unsigned char* vu, int width,
                                            int height, char* path);
MOLO_EXPORT int TIFF_Save_Input_NV21_to_RGB(unsigned char** y, unsigned char** vu, int width,
                                            int height, char* path);

// Read-back: a grey file into a flat plane, a colour file into a flat luma
// plane and an NV21 chroma plane. A file of another size is reported on the
// log and leaves the buffers untouched. 0 on success, 1 otherwise.
MOLO_EXPORT int TIFF_readY(unsigned char* y, int width, int height, char* path);
MOLO_EXPORT int TIFF_readYUV(unsigned char* y, unsigned char* vu, int width, int height,
                             char* path);

// Text listings, one line per value: row, column, value.
MOLO_EXPORT int Write_Text(float** src, int width, int height, char* path);
MOLO_EXPORT int Write_Text(int* src, int width, int height, char* path);

#endif  // MOLO_DEBUG_H
