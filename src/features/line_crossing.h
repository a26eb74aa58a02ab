// The working-grid pixel closest to two Hough lines, measured in whole rho
// steps: the corner-and-line check asks where the candidate's two strongest
// lines cross.
#ifndef MOLO_FEATURES_LINE_CROSSING_H
#define MOLO_FEATURES_LINE_CROSSING_H

namespace molo {

struct HoughLineRef {
    float cos_a;  // cos_table[angle]
    float sin_a;  // sin_table[angle]
    int rho;      // rho index of the line
};

// Over the grid [0, rows) x [0, columns), row-major, the distance of a pixel
// from a line is |trunc(rho - (((cos_a * row + sin_a * col) + diag) + 0.5))|,
// in single precision in that order. A pixel whose two distances add up to
// less than the best so far (starting at 100) is stored in *cross_row,
// *cross_col; ties keep the first pixel met. Nothing is stored when no pixel
// comes below 100.
void find_line_crossing(const HoughLineRef& main_line, const HoughLineRef& second_line, int diag,
                        int rows, int columns, int* cross_row, int* cross_col);

}  // namespace molo

#endif  // MOLO_FEATURES_LINE_CROSSING_H
