// How a frame's analysis ends: rejection, and the decision chain that runs
// on a chosen candidate.
#ifndef MOLO_DETECTOR_REJECTION_H
#define MOLO_DETECTOR_REJECTION_H

class Molo_FingerDetect;

namespace molo {

// Ends the frame without a detection: clears the busy flag, drops any held
// detection, logs the message when diagnostic logging is on, and returns 0.
// The message's first number is the active colour entry, its second (where it
// has one) `extra`.
int reject(Molo_FingerDetect& d, const char* format, int extra = 0);

// The tests applied to the chosen candidate (region best_label of
// best_area pixels), the two-frame confirmation and the report. Returns the
// frame's result.
int decide(Molo_FingerDetect& d, int best_area, int* pos_row, int* pos_col);

}  // namespace molo

#endif  // MOLO_DETECTOR_REJECTION_H
