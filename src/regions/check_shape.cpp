// Shape check of the candidate region: for every frame edge its bounding box
// touches, the depth the region reaches inward from that edge is profiled
// line by line, and a profile that jumps between its extremes twice marks a
// region that does not enter the frame the way a fingertip does.
#include <cstdlib>

#include "molo/detector.h"
#include "support/float_to_int.h"

namespace {

// A depth profile over entries first .. last of `profile`.
struct Profile {
    float* values;
    int first;
    int last;
    float max;
    float min;
};

// Fills entries first .. last with depth(entry, scan), where `scan` holds the
// last depth found. It starts at 0 for the edge and is never reset, so a line
// without a labelled cell repeats the previous entry's value (pinned by
// CheckShape.EachEdgeProfilesDepthFromItselfAndRejectsTwoJumps). The minimum
// starts from the grid's column count for every edge, row-wise ones too
// (pinned by CheckShape.ProfileRules).
template <typename Depth>
Profile build_profile(float* values, int first, int last, int columns, Depth depth) {
    Profile p{values, first, last, 0.0f, static_cast<float>(columns)};
    int scan = 0;
    for (int k = first; k <= last; ++k) {
        depth(k, scan);
        const float v = static_cast<float>(scan);
        values[k] = v;
        if (v > p.max) p.max = v;
        if (v < p.min) p.min = v;
    }
    return p;
}

// True when the normalised profile jumps between its extremes twice. The two
// outermost entries at each end are not tested. Only a whole step survives
// the truncation of the difference, so only a step from the minimum straight
// to the maximum or back counts. A flat profile normalises to non-finite
// values whose difference truncates to 0, so it passes.
bool jumps_twice(const Profile& p) {
    const float range = p.max - p.min;
    int jumps = 0;
    float previous = 0.0f;
    for (int k = p.first + 2; k <= p.last - 2; ++k) {
        const float current = (p.values[k] - p.min) / range;
        if (k > p.first + 2) {
            const int step = std::abs(molo::to_int_sat(previous - current));
            if (static_cast<float>(step) > 0.5f) ++jumps;
            if (jumps >= 2) return true;
        }
        previous = current;
    }
    return false;
}

}  // namespace

int Molo_FingerDetect::CheckShape() {
    const int rows = down_height;
    const int columns = down_width;
    const int top = box_top;
    const int left = box_left;
    const int bottom = box_bottom;
    const int right = box_right;
    const unsigned int mark = static_cast<unsigned int>(best_label);

    // Regions of five rows or five columns or fewer pass unchecked.
    if (bottom - top <= 4 || right - left <= 4) return 1;

    auto labelled = [&](int r, int c) { return label_map[r * columns + c] == mark; };

    // Edges in fixed order; the first that rejects decides.
    if (top == 0) {
        // Per column: row of the lowest labelled cell from row 0 to the box bottom.
        const Profile p = build_profile(shape_profile, left, right, columns, [&](int c, int& scan) {
            for (int r = 0; r <= bottom; ++r) {
                if (labelled(r, c)) scan = r;
            }
        });
        if (jumps_twice(p)) return 0;
    }
    if (left == 0) {
        // Per row: column of the rightmost labelled cell from column 0 to the box right.
        const Profile p = build_profile(shape_profile, top, bottom, columns, [&](int r, int& scan) {
            for (int c = 0; c <= right; ++c) {
                if (labelled(r, c)) scan = c;
            }
        });
        if (jumps_twice(p)) return 0;
    }
    if (bottom == rows - 1) {
        // Per column: height above the bottom row of the highest labelled cell
        // up to the box top.
        const Profile p = build_profile(shape_profile, left, right, columns, [&](int c, int& scan) {
            for (int step = 0; step < rows - top; ++step) {
                if (labelled(rows - 1 - step, c)) scan = step;
            }
        });
        if (jumps_twice(p)) return 0;
    }
    if (right == columns - 1) {
        // Per row: distance from the last column of the leftmost labelled cell
        // up to the box left.
        const Profile p = build_profile(shape_profile, top, bottom, columns, [&](int r, int& scan) {
            for (int step = 0; step < columns - left; ++step) {
                if (labelled(r, columns - 1 - step)) scan = step;
            }
        });
        if (jumps_twice(p)) return 0;
    }
    return 1;
}
