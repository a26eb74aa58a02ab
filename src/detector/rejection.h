// How a frame's analysis ends without a detection.
#ifndef MOLO_DETECTOR_REJECTION_H
#define MOLO_DETECTOR_REJECTION_H

class Molo_FingerDetect;

namespace molo {

// Ends the frame without a detection: drops any held detection, logs the
// message when diagnostic logging is on, and returns 0 (execute clears the
// busy flag as the call ends).
// The message's first number is the active colour entry, its second (where it
// has one) `extra`.
int reject(Molo_FingerDetect& d, const char* format, int extra = 0);

}  // namespace molo

#endif  // MOLO_DETECTOR_REJECTION_H
