// Addressing of the working chroma image, which keeps the NV21 arrangement at
// half the working resolution: working pixel (r, c) uses the pair at row
// r / 2, column pair c / 2.
#ifndef MOLO_DETECTOR_CHROMA_PAIR_H
#define MOLO_DETECTOR_CHROMA_PAIR_H

#include "molo/detector.h"

namespace molo {

// The pair's first byte (compared with an entry's ref_u), then its second.
inline const unsigned char* chroma_pair(const Molo_FingerDetect& d, int r, int c) {
    return d.down_vu + (r / 2) * d.down_width + (c & ~1);
}

}  // namespace molo

#endif  // MOLO_DETECTOR_CHROMA_PAIR_H
