// The per-frame analysis: downsampling, colour entry, light-class exclusion
// and orientation check.
#include "molo/detector.h"
#include "support/log.h"

int Molo_FingerDetect::execute(unsigned char* y_plane, unsigned char* vu_plane, int orientation_,
                               bool do_downsample, int stride, int ds_mode,
                               float /*capture_gain*/, int /*color_temp*/, int* /*pos_row*/,
                               int* /*pos_col*/) {
    // A detector without working planes (never or not successfully
    // initialised, or finalised) has nothing to analyse.
    if (down_y == nullptr) return 0;
    src_stride = stride;
    if (busy != 0) return 0;
    busy = 1;
    src_y = y_plane;
    src_vu = vu_plane;

    if (do_downsample) DownSampling(stride, ds_mode);

    // While searching, every call tries the next colour entry; while a
    // detection is held the entry stays frozen. A detector driven directly,
    // before any warm-up call has set db_count, uses entry 0.
    if (have_detect == 0) db_index = db_count > 0 ? frame_count % db_count : 0;
    const FingerColor& entry = finger_db[db_index];

    const bool excluded = (light_class == 1 && (entry.kind == 3 || entry.kind == 4)) ||
                          (light_class == 2 && entry.kind == 3) ||
                          (light_class == 3 && entry.kind == 4);
    if (excluded) {
        ++frame_count;
        busy = 0;
        return 0;
    }

    ref_u = entry.ref_u;
    ref_v = entry.ref_v;
    ++frame_count;
    orientation = orientation_;

    // An unknown orientation leaves the detector busy for good: every later
    // call returns 0. This lock-out is deliberate.
    if (static_cast<unsigned int>(orientation) > 1) {
        molo::log_print(molo::kLogError, "error! orientation is wrong.\n");
        return 0;
    }

    busy = 0;
    return 0;
}
