// A detector initialised for a working grid of w x h cells (preview 8w x 8h),
// released when the test ends.
#ifndef MOLO_TESTS_DETECTOR_FIXTURE_H
#define MOLO_TESTS_DETECTOR_FIXTURE_H

#include "MoloFingerDetect.h"

class ScopedDetector {
public:
    ScopedDetector(int working_width, int working_height) {
        d.Initialize(working_width * 8, working_height * 8, nullptr);
    }
    ~ScopedDetector() { d.Finalize(nullptr, 0); }
    ScopedDetector(const ScopedDetector&) = delete;
    ScopedDetector& operator=(const ScopedDetector&) = delete;

    Molo_FingerDetect* operator->() { return &d; }
    Molo_FingerDetect& operator*() { return d; }

    int cells() const { return d.down_width * d.down_height; }
    int index(int r, int c) const { return r * d.down_width + c; }

    Molo_FingerDetect d;
};

#endif  // MOLO_TESTS_DETECTOR_FIXTURE_H
