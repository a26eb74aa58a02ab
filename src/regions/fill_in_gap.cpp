// Hole filling in the candidate region, so that its outline and area are
// measured as if it were solid.
#include <cstddef>

#include "molo/detector.h"

namespace {

// Extent of one hole inside the bounding box.
struct Extent {
    int min_row;
    int max_row;
    int min_col;
    int max_col;
};

}  // namespace

// The label plane is rebuilt from the mask (earlier region labels are lost):
// 1 on mask cells, and every other 4-connected set of equal mask bytes met
// inside the bounding box gets its own hole label from 2 upward. A hole is
// filled when it is enclosed, which depends on where the box lies in the
// frame; a hole that touches a side of the box lying inside the frame opens
// to the background and is left alone.
//
// The enclosure rules are deliberately asymmetric: when the box touches the
// top or the left edge of the frame, a hole must still stay clear of the
// right and bottom sides of the box even where those lie on the frame's edge,
// while for a box touching neither the top nor the left edge the right and
// bottom frame edges count as open sides. A box touching no frame edge keeps
// all its holes. Pinned by
// FillInGap.TheSidesAHoleMustAvoidDependOnWhereTheBoxLies.
void Molo_FingerDetect::FillInGap() {
    const int rows = down_height;
    const int columns = down_width;
    const size_t n = static_cast<size_t>(rows) * static_cast<size_t>(columns);
    const int top = box_top;
    const int left = box_left;
    const int bottom = box_bottom;
    const int right = box_right;

    // Label 1 on mask cells and 0 elsewhere, in one pass.
    unsigned int* const labels = label_map;
    const unsigned char* const mask = finger_mask;
    for (size_t i = 0; i < n; ++i) labels[i] = mask[i] == 1 ? 1u : 0u;

    // Seeds are taken inside the box only, but a hole's flood (and so its
    // area) may run beyond it.
    int next_label = 2;
    for (int r = top; r <= bottom; ++r) {
        for (int c = left; c <= right; ++c) {
            if (label_map[r * columns + c] != 0) continue;
            int count = 0;
            ConnectedSet(Pixel{r, c}, 1.0, finger_mask, columns, rows, next_label, label_map,
                         &count);
            region_stats[next_label].area = static_cast<float>(count);
            ++next_label;
        }
    }
    if (next_label == 2) return;

    for (int label = 2; label < next_label; ++label) {
        const unsigned int mark = static_cast<unsigned int>(label);
        Extent e{bottom, top, right, left};
        for (int r = top; r <= bottom; ++r) {
            for (int c = left; c <= right; ++c) {
                if (label_map[r * columns + c] != mark) continue;
                if (r < e.min_row) e.min_row = r;
                if (r > e.max_row) e.max_row = r;
                if (c < e.min_col) e.min_col = c;
                if (c > e.max_col) e.max_col = c;
            }
        }

        const bool clear_of_top = top < e.min_row;
        const bool clear_of_left = left < e.min_col;
        const bool clear_of_bottom = e.max_row < bottom;
        const bool clear_of_right = e.max_col < right;
        const bool bottom_on_frame = bottom == rows - 1;
        const bool right_on_frame = right == columns - 1;
        bool enclosed;
        if (left == 0 && top == 0) {
            enclosed = clear_of_right && clear_of_bottom;
        } else if (left == 0) {
            enclosed = bottom_on_frame ? clear_of_top && clear_of_right
                                       : clear_of_top && clear_of_right && clear_of_bottom;
        } else if (top == 0) {
            enclosed = clear_of_left && clear_of_right && clear_of_bottom;
        } else if (right_on_frame && bottom_on_frame) {
            enclosed = clear_of_top && clear_of_left;
        } else if (right_on_frame) {
            enclosed = clear_of_top && clear_of_left && clear_of_bottom;
        } else if (bottom_on_frame) {
            enclosed = clear_of_top && clear_of_left && clear_of_right;
        } else {
            enclosed = false;
        }
        if (!enclosed) continue;

        for (int r = e.min_row; r <= e.max_row; ++r) {
            for (int c = e.min_col; c <= e.max_col; ++c) {
                if (label_map[r * columns + c] == mark) finger_mask[r * columns + c] = 1;
            }
        }
    }
}
