// The chain of tests a chosen candidate must pass to count as a finger.
#ifndef MOLO_DETECTOR_DECISION_H
#define MOLO_DETECTOR_DECISION_H

class Molo_FingerDetect;

namespace molo {

// Inclusive extent of a grown region on the working grid.
struct RegionBox {
    int top;
    int left;
    int bottom;
    int right;
};

// The tests applied to the chosen candidate (region best_label of
// best_area pixels, all within `extent`), the two-frame confirmation and the
// report. Returns the frame's result: 1 with the position written on a
// report, else 0.
int decide(Molo_FingerDetect& d, int best_area, const RegionBox& extent, int* pos_row,
           int* pos_col);

}  // namespace molo

#endif  // MOLO_DETECTOR_DECISION_H
