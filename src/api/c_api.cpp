// The C entry points: handle rules and argument checks; the detector does the
// rest.
#include <cstdlib>

#include "MoloFingerDetect.h"
#include "detector/entry_search.h"
#include "support/log.h"

extern "C" {

void* MoloFinDetect_Initialize(void* handle, int width, int height, char* db_path) {
    if (handle != nullptr) return handle;
    auto* detector = new Molo_FingerDetect();
    const int rc = detector->Initialize(width, height, db_path);
    if (rc == 0) return detector;
    // "Initializ" is the message's own spelling (pinned by
    // CApi.AbsurdSizeGivesNullAndTheFailureMessage).
    molo::log_print(molo::kLogDebug, "MoloFinDetect_Initializ (%d)\n", rc);
    delete detector;
    return handle;
}

int MoloFinDetect_Execute(void* handle, unsigned char* y_plane, unsigned char* vu_plane,
                          int orientation, int src_stride, int ds_mode, float capture_gain,
                          int color_temp, int* pos_row, int* pos_col) {
    if (vu_plane == nullptr || y_plane == nullptr) return MOLO_FD_NULL_PLANE;
    if (handle == nullptr) return 0;
    auto* detector = static_cast<Molo_FingerDetect*>(handle);
    if (src_stride < detector->width) {
        if (detector->log_enabled != 0) {
            molo::log_print(molo::kLogError, "MoloFinDetect_Execute: stride %d below width %d\n",
                            src_stride, detector->width);
        }
        return MOLO_FD_BAD_STRIDE;
    }
    return molo::analyse_frame(*detector, y_plane, vu_plane, orientation, src_stride, ds_mode,
                               capture_gain, color_temp, pos_row, pos_col);
}

int MoloFinDetect_Verification(void* handle, unsigned char* y_plane, unsigned char* vu_plane, int a,
                               int b, int c, int d) {
    if (vu_plane == nullptr || y_plane == nullptr) return MOLO_FD_NULL_PLANE;
    if (handle == nullptr) return 0;
    return static_cast<Molo_FingerDetect*>(handle)->Verification(y_plane, vu_plane, a, b, c, d);
}

int MoloFinDetect_Finalize(void* handle, char* db_path, int save_db) {
    if (handle == nullptr) return 0;
    auto* detector = static_cast<Molo_FingerDetect*>(handle);
    detector->Finalize(db_path, save_db);
    delete detector;
    return 0;
}

}  // extern "C"
