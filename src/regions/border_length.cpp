// How long a stretch of the frame's edge a region touches, and where it first
// touches it. Only the side column named by the orientation is examined.
#include "molo/detector.h"

namespace {

// Cells of one border segment holding the label, and the position of the
// first one met in scan order.
struct Segment {
    int count = 0;
    int position = 0;

    void visit(bool labelled, int pos) {
        if (!labelled) return;
        if (count == 0) position = pos;
        ++count;
    }
};

}  // namespace

int Molo_FingerDetect::GetBorderLength(int label, int* position) {
    const int w = down_width;
    const int h = down_height;
    const unsigned int mark = static_cast<unsigned int>(label);
    // A detector without a grid has no border to touch.
    if (w <= 0 || h <= 0) {
        *position = w;
        return 0;
    }

    Segment top;
    Segment bottom;
    for (int c = 0; c < w; ++c) top.visit(label_map[c] == mark, c);
    for (int c = 0; c < w; ++c) bottom.visit(label_map[(h - 1) * w + c] == mark, c);

    // The side column is split at half: the upper part reports the row of its
    // first cell from the top, the lower part, scanned upward from the bottom
    // row, the distance of its first cell above the bottom row.
    const int side = orientation == 0 ? 0 : w - 1;
    const int half = h / 2;
    Segment upper;
    Segment lower;
    for (int r = 0; r <= half; ++r) upper.visit(label_map[r * w + side] == mark, r);
    if (h - 1 > half) {
        for (int r = h - 1; r > half; --r) lower.visit(label_map[r * w + side] == mark, h - 1 - r);
    }

    // The top and bottom rows compete alone, but a side half that beats them
    // wins with the count of the whole side column. A tie keeps the top.
    const int side_count = upper.count + lower.count;
    int length = top.count < 0 ? 0 : top.count;
    const Segment* chosen = &top;
    if (bottom.count > length) {
        length = bottom.count;
        chosen = &bottom;
    }
    if (upper.count > length) {
        length = side_count;
        chosen = &upper;
    }
    if (lower.count > length) {
        length = side_count;
        chosen = &lower;
    }

    *position = length != 0 ? chosen->position : w;
    return length;
}
