// The C entry points a camera client calls, over an opaque handle.
#ifndef MOLO_C_API_H
#define MOLO_C_API_H

#include "molo/export.h"

// Result of MoloFinDetect_Execute and MoloFinDetect_Verification for a null plane.
#define MOLO_FD_NULL_PLANE (-12)
// Result of MoloFinDetect_Execute for a row stride below the preview width.
#define MOLO_FD_BAD_STRIDE (-22)

#ifdef __cplusplus
extern "C" {
#endif

// Creates a detector for a width x height preview when handle is null; returns
// a live handle unchanged. Returns null when the size is unusable.
MOLO_EXPORT void* MoloFinDetect_Initialize(void* handle, int width, int height, char* db_path);

// Analyses one NV21 frame. Returns 1 with the finger's centroid in full-frame
// pixels in *pos_row, *pos_col; 0 when nothing is reported; MOLO_FD_NULL_PLANE
// for a null plane; MOLO_FD_BAD_STRIDE when src_stride is below the width.
//
// What surprises users:
// - 0 means any of "no finger" (none seen, one not yet confirmed by a second
//   frame, or a candidate rejected), "busy" (a call overlapping another on
//   the same handle) and "null handle"; they cannot be told apart.
// - orientation is 0 (the finger enters from the left) or 1 (from the right).
//   Any other value logs "error! orientation is wrong." at error priority,
//   even with logging off, and turns the handle off for good: this call and
//   every later one return 0. Finalize the handle and create a new one.
// - The detector works on an eighth of the frame each way, each made even.
//   When that working area is under 435 cells, as for 176x144 (22 x 18) or
//   192x144 (24 x 18) previews, the minimum region area rounds down to 0: a
//   frame on which no region qualifies goes on with a candidate of area 0
//   and, if it passes the remaining tests, is reported at position (0, 0).
MOLO_EXPORT int MoloFinDetect_Execute(void* handle, unsigned char* y_plane, unsigned char* vu_plane,
                                      int orientation, int src_stride, int ds_mode,
                                      float capture_gain, int color_temp, int* pos_row,
                                      int* pos_col);

// Reserved hook: checks its arguments and returns 0.
MOLO_EXPORT int MoloFinDetect_Verification(void* handle, unsigned char* y_plane,
                                           unsigned char* vu_plane, int, int, int, int);

// Releases every buffer and destroys the detector; the handle is gone afterwards.
MOLO_EXPORT int MoloFinDetect_Finalize(void* handle, char* db_path, int save_db);

#ifdef __cplusplus
}
#endif

#endif  // MOLO_C_API_H
