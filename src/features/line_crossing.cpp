// The distance sum of a pixel is formed as the per-pixel expression has it
// (the row's cosine term is the same float for the whole row, and the sums
// keep their order), so every pixel's figure is exactly the one of the
// expression. Two whole distances add up exactly in float as in int, so the
// comparison with the best float sum is the comparison of the int sums.
//
// A row is measured in blocks of columns by a loop without branches, which
// the compiler vectorizes; only a block whose least sum beats the best is
// searched again, cell by cell, for the first such pixel.
#include "features/line_crossing.h"

namespace molo {
namespace {

constexpr int kBlock = 256;

// |trunc(rho - pos)|: the positions stay within a few grid diagonals, so the
// truncation is in range and needs no saturation.
inline int distance(float rho, float pos) {
    const int t = static_cast<int>(rho - pos);
    return t < 0 ? -t : t;
}

}  // namespace

void find_line_crossing(const HoughLineRef& main_line, const HoughLineRef& second_line, int diag,
                        int rows, int columns, int* cross_row, int* cross_col) {
    const float main_rho = static_cast<float>(main_line.rho);
    const float other_rho = static_cast<float>(second_line.rho);
    const float centre = static_cast<float>(diag);
    int best = 100;
    int sums[kBlock];
    for (int row = 0; row < rows; ++row) {
        const float main_row = main_line.cos_a * static_cast<float>(row);
        const float other_row = second_line.cos_a * static_cast<float>(row);
        for (int c0 = 0; c0 < columns; c0 += kBlock) {
            const int n = columns - c0 < kBlock ? columns - c0 : kBlock;
            int least = best;
            for (int k = 0; k < n; ++k) {
                const float col = static_cast<float>(c0 + k);
                const float p1 = ((main_row + main_line.sin_a * col) + centre) + 0.5f;
                const float p2 = ((other_row + second_line.sin_a * col) + centre) + 0.5f;
                const int sum = distance(main_rho, p1) + distance(other_rho, p2);
                sums[k] = sum;
                least = sum < least ? sum : least;
            }
            if (least >= best) continue;
            for (int k = 0; k < n; ++k) {
                if (sums[k] < best) {
                    best = sums[k];
                    *cross_row = row;
                    *cross_col = c0 + k;
                }
            }
        }
    }
}

}  // namespace molo
