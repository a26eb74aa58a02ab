// The working grid: one eighth of the preview in each direction, made even.
#ifndef MOLO_DETECTOR_WORKING_SIZE_H
#define MOLO_DETECTOR_WORKING_SIZE_H

namespace molo {

inline int working_extent(int preview_extent) {
    int extent = preview_extent / 8;
    if (extent % 2 != 0) extent -= 1;
    return extent;
}

// Largest preview extent accepted, far beyond any camera preview; it keeps
// every plane size within int arithmetic.
constexpr int kMaxPreviewExtent = 16384;

}  // namespace molo

#endif  // MOLO_DETECTOR_WORKING_SIZE_H
