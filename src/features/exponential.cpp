// The integer Gaussian weight matrix of the corner stage.
#include <cmath>

#include "molo/support.h"
#include "support/float_to_int.h"

void exponential(int** weights, int rows, int cols, float sigma) {
    // An empty matrix has nothing to fill (and no row 0 to release through).
    if (rows < 1 || cols < 1) return;
    float** g = allocate_float_matrix(rows, cols);
    const float denom = sigma * (sigma + sigma);
    float sum = 0.0f;
    const int y0 = (1 - rows) / 2;
    const int x0 = (1 - cols) / 2;
    for (int i = 0; i < rows; ++i) {
        const int y = y0 + i;
        for (int j = 0; j < cols; ++j) {
            const int x = x0 + j;
            const float e = static_cast<float>(-(y * y + x * x)) / denom;
            g[i][j] = static_cast<float>(std::exp(static_cast<double>(e)));
            sum += g[i][j];
        }
    }
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < cols; ++j) {
            const float normalised = g[i][j] / sum;
            weights[i][j] = molo::to_int_sat(normalised * 100000.0f);
        }
    }
    free_matrix(reinterpret_cast<void**>(g));
}
