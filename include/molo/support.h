// Exported utilities: row-pointer arrays, small statistics, timing, the
// gradient helpers that are free functions, and the property reader.
#ifndef MOLO_SUPPORT_H
#define MOLO_SUPPORT_H

#include "molo/export.h"

// Row-pointer matrices: one zero-filled block of row pointers into one
// contiguous zero-filled data block (m[0] is the data block). Free with free_matrix.
MOLO_EXPORT double** allocate_double_matrix(int rows, int cols);
MOLO_EXPORT float** allocate_float_matrix(int rows, int cols);
MOLO_EXPORT unsigned char** allocate_unsigned_char_matrix(int rows, int cols);
MOLO_EXPORT char** allocate_char_matrix(int rows, int cols);
MOLO_EXPORT unsigned int** allocate_unsigned_int_matrix(int rows, int cols);
MOLO_EXPORT int** allocate_int_matrix(int rows, int cols);
MOLO_EXPORT short** allocate_short_matrix(int rows, int cols);

// Cubes: d0 independent matrices of d1 x d2. Free with free_cube(c, d0).
MOLO_EXPORT double*** allocate_double_cube(int d0, int d1, int d2);
MOLO_EXPORT unsigned char*** allocate_unsigned_char_cube(int d0, int d1, int d2);
MOLO_EXPORT char*** allocate_char_cube(int d0, int d1, int d2);
MOLO_EXPORT float*** allocate_float_cube(int d0, int d1, int d2);
MOLO_EXPORT int*** allocate_int_cube(int d0, int d1, int d2);
MOLO_EXPORT short*** allocate_short_cube(int d0, int d1, int d2);

// 4-D arrays: d0 cubes of d1 x d2 x d3 in a top block of d1 slots, so they are
// well-formed only when d0 <= d1. There is no release function for them.
MOLO_EXPORT unsigned char**** allocate_unsigned_char_4D(int d0, int d1, int d2, int d3);
MOLO_EXPORT float**** allocate_float_4D(int d0, int d1, int d2, int d3);

MOLO_EXPORT void free_matrix(void** m);
MOLO_EXPORT void free_cube(void*** c, int d0);

// Arithmetic mean in single precision (n = 0 gives NaN).
MOLO_EXPORT float mean(float* v, int n);
// Median by repeated minimum extraction; destroys v. Values must lie below 2^29
// and the running maximum starts at 0, so negative extracted values become 0.
MOLO_EXPORT float median(float* v, int n);
// Wall-clock milliseconds since the Unix epoch, written to *out and returned.
MOLO_EXPORT long long timestamp(long long* out);

// 7 x 7 gradient responses (left minus right, top minus bottom) at (row, col),
// which must lie at least 3 away from every edge.
MOLO_EXPORT void Derivative(unsigned char* plane, int row, int col, int width, int* vertical,
                            int* horizontal);
// Fills a rows x cols row-pointer matrix with a normalised Gaussian scaled by 100000.
MOLO_EXPORT void exponential(int** weights, int rows, int cols, float sigma);

// Reads a system property into value (92 bytes); falls back to default_value
// when it is missing or empty. Returns the length the platform reported.
MOLO_EXPORT int android_property_get(const char* name, char* value, const char* default_value);

#endif  // MOLO_SUPPORT_H
