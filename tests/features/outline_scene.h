// Hand-made regions and outlines for the corner and line stages.
#ifndef MOLO_TESTS_FEATURES_OUTLINE_SCENE_H
#define MOLO_TESTS_FEATURES_OUTLINE_SCENE_H

#include <algorithm>

#include "common/detector_fixture.h"

// finger_mask = value(row, col); the box is the extent of the non-zero cells.
template <typename F>
void paint_region(ScopedDetector& d, F value) {
    d->box_top = d->down_height, d->box_left = d->down_width, d->box_bottom = d->box_right = -1;
    for (int r = 0; r < d->down_height; ++r) {
        for (int c = 0; c < d->down_width; ++c) {
            const int v = value(r, c);
            d->finger_mask[d.index(r, c)] = static_cast<unsigned char>(v);
            if (v == 0) continue;
            d->box_top = std::min(d->box_top, r), d->box_bottom = std::max(d->box_bottom, r);
            d->box_left = std::min(d->box_left, c), d->box_right = std::max(d->box_right, c);
        }
    }
}

// edge_map = on(row, col); edge_count = the number of marked cells.
template <typename F>
void mark_outline(ScopedDetector& d, F on) {
    d->edge_count = 0;
    for (int i = 0; i < d.cells(); ++i) {
        d->edge_map[i] = on(i / d->down_width, i % d->down_width) ? 1 : 0;
        d->edge_count += d->edge_map[i];
    }
}

inline bool in_rect(int r, int c, int top, int left, int bottom, int right) {
    return r >= top && r <= bottom && c >= left && c <= right;
}

#endif  // MOLO_TESTS_FEATURES_OUTLINE_SCENE_H
