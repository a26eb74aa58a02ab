#include "detector/entry_search.h"

#include "detector/colour_rules.h"
#include "molo/detector.h"

namespace molo {

int analyse_frame(Molo_FingerDetect& d, unsigned char* y_plane, unsigned char* vu_plane,
                  int orientation, int src_stride, int ds_mode, float capture_gain, int color_temp,
                  int* pos_row, int* pos_col) {
    // Tracking: the colour entry is frozen, one call per frame.
    if (d.have_detect != 0) {
        return d.execute(y_plane, vu_plane, orientation, true, src_stride, ds_mode, capture_gain,
                         color_temp, pos_row, pos_col);
    }

    // Searching: each call advances to the next colour entry; the frame is
    // downsampled once and reused. The first detection ends the loop.
    d.db_count = MOLO_FINGER_DB_SIZE;
    d.light_class = light_class_of(capture_gain, color_temp);
    int result = 0;
    for (int k = 1; k <= MOLO_FINGER_DB_SIZE; ++k) {
        result = d.execute(y_plane, vu_plane, orientation, k == 1, src_stride, ds_mode,
                           capture_gain, color_temp, pos_row, pos_col);
        if (d.have_detect != 0) break;
    }
    return result;
}

}  // namespace molo
