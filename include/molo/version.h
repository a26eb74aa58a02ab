// Version of libMoloFingerDetect, for code that must know which release it
// was compiled against. The build checks these against the project's version.
#ifndef MOLO_VERSION_H
#define MOLO_VERSION_H

#define MOLO_FINGERDETECT_VERSION_MAJOR 1
#define MOLO_FINGERDETECT_VERSION_MINOR 0
#define MOLO_FINGERDETECT_VERSION_PATCH 0
// One number for comparisons: major * 10000 + minor * 100 + patch.
#define MOLO_FINGERDETECT_VERSION                                                      \
    (MOLO_FINGERDETECT_VERSION_MAJOR * 10000 + MOLO_FINGERDETECT_VERSION_MINOR * 100 + \
     MOLO_FINGERDETECT_VERSION_PATCH)

#endif  // MOLO_VERSION_H
