// libMoloFingerDetect: tells, frame by frame, whether a finger covers part of
// the camera lens, and where. Include this header and link the library.
#ifndef MOLO_FINGER_DETECT_H
#define MOLO_FINGER_DETECT_H

#include "molo/c_api.h"
#include "molo/version.h"

#ifdef __cplusplus
#include "molo/types.h"
#include "molo/detector.h"
#include "molo/support.h"
#include "molo/debug.h"
#endif

#endif  // MOLO_FINGER_DETECT_H
