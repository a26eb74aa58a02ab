// One frame through the detector: the search over the colour entries, or the
// single call with the held entry.
#ifndef MOLO_DETECTOR_ENTRY_SEARCH_H
#define MOLO_DETECTOR_ENTRY_SEARCH_H

class Molo_FingerDetect;

namespace molo {

// Analyses a frame whose arguments MoloFinDetect_Execute has checked. While a
// detection is held (tracking) the frame is tried once against the frozen
// entry. While searching, the frame's light class is taken from gain and
// colour temperature, and each execute call tries the next colour entry, the
// frame downsampled once and reused; the first detection ends the loop.
// Returns the last execute call's result.
int analyse_frame(Molo_FingerDetect& d, unsigned char* y_plane, unsigned char* vu_plane,
                  int orientation, int src_stride, int ds_mode, float capture_gain, int color_temp,
                  int* pos_row, int* pos_col);

}  // namespace molo

#endif  // MOLO_DETECTOR_ENTRY_SEARCH_H
