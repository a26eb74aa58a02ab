// Row-pointer matrices, cubes and 4-D arrays. Every block comes from calloc,
// so every element starts at zero; a matrix's row pointer 0 is its data block.
#include <cstdlib>

#include "molo/support.h"

namespace {

template <typename T>
T** allocate_matrix(int rows, int cols) {
    T** m = static_cast<T**>(std::calloc(rows, sizeof(T*)));
    // The element count is formed in unsigned 32-bit arithmetic.
    const unsigned int count = static_cast<unsigned int>(rows) * static_cast<unsigned int>(cols);
    T* data = static_cast<T*>(std::calloc(count, sizeof(T)));
    if (rows < 1) return m;  // the data block stays allocated and unreferenced
    for (int r = 0; r < rows; ++r) m[r] = data + static_cast<size_t>(r) * cols;
    return m;
}

template <typename T>
T*** allocate_cube(int d0, int d1, int d2) {
    T*** c = static_cast<T***>(std::calloc(d0, sizeof(T**)));
    if (d0 < 1) return c;
    for (int i = 0; i < d0; ++i) c[i] = allocate_matrix<T>(d1, d2);
    return c;
}

// The top block is sized by d1, not d0: well-formed only for d0 <= d1; kept
// so (pinned by Arrays.MatrixRowsShareOneZeroedBlock).
template <typename T>
T**** allocate_4d(int d0, int d1, int d2, int d3) {
    T**** a = static_cast<T****>(std::calloc(d1, sizeof(T***)));
    if (d0 < 1) return a;
    for (int i = 0; i < d0; ++i) a[i] = allocate_cube<T>(d1, d2, d3);
    return a;
}

}  // namespace

double** allocate_double_matrix(int rows, int cols) { return allocate_matrix<double>(rows, cols); }
float** allocate_float_matrix(int rows, int cols) { return allocate_matrix<float>(rows, cols); }
unsigned char** allocate_unsigned_char_matrix(int rows, int cols) {
    return allocate_matrix<unsigned char>(rows, cols);
}
char** allocate_char_matrix(int rows, int cols) { return allocate_matrix<char>(rows, cols); }
unsigned int** allocate_unsigned_int_matrix(int rows, int cols) {
    return allocate_matrix<unsigned int>(rows, cols);
}
int** allocate_int_matrix(int rows, int cols) { return allocate_matrix<int>(rows, cols); }
short** allocate_short_matrix(int rows, int cols) { return allocate_matrix<short>(rows, cols); }

double*** allocate_double_cube(int d0, int d1, int d2) { return allocate_cube<double>(d0, d1, d2); }
unsigned char*** allocate_unsigned_char_cube(int d0, int d1, int d2) {
    return allocate_cube<unsigned char>(d0, d1, d2);
}
char*** allocate_char_cube(int d0, int d1, int d2) { return allocate_cube<char>(d0, d1, d2); }
float*** allocate_float_cube(int d0, int d1, int d2) { return allocate_cube<float>(d0, d1, d2); }
int*** allocate_int_cube(int d0, int d1, int d2) { return allocate_cube<int>(d0, d1, d2); }
short*** allocate_short_cube(int d0, int d1, int d2) { return allocate_cube<short>(d0, d1, d2); }

unsigned char**** allocate_unsigned_char_4D(int d0, int d1, int d2, int d3) {
    return allocate_4d<unsigned char>(d0, d1, d2, d3);
}
float**** allocate_float_4D(int d0, int d1, int d2, int d3) {
    return allocate_4d<float>(d0, d1, d2, d3);
}

void free_matrix(void** m) {
    std::free(m[0]);
    std::free(m);
}

void free_cube(void*** c, int d0) {
    for (int i = 0; i < d0; ++i) free_matrix(c[i]);
    std::free(c);
}
