// The perimeter count of compute_perimeter over a window of the grid. Cells
// outside the window are not visited; a window holding every cell of the
// label gives the count of the whole grid, since only the label's own cells
// contribute.
#ifndef MOLO_REGIONS_PERIMETER_H
#define MOLO_REGIONS_PERIMETER_H

namespace molo {

unsigned int perimeter_count(const unsigned int* labels, int stride, int rows, int label,
                             int row_begin, int row_end, int col_begin, int col_end);

}  // namespace molo

#endif  // MOLO_REGIONS_PERIMETER_H
