// The tests a chosen candidate must pass to count as a finger covering the
// lens, the two-frame confirmation and the report of its position.
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "detector/chroma_pair.h"
#include "detector/colour_rules.h"
#include "detector/decision.h"
#include "detector/rejection.h"
#include "molo/detector.h"
#include "molo/support.h"
#include "support/log.h"

namespace {

constexpr char kNotFingerShape[] = "%d:Not finger shape.\n";
// "cololr" is the message's own spelling (pinned by
// Decision.CommonColourElsewhereRejects).
constexpr char kSimilarColour[] =
    "%d:Similar finger cololr exist much. so not sure it is really finger.\n";

struct RegionMeans {
    float y;
    float u;  // first chroma byte
    float v;  // second chroma byte
};

// Bounding box of the candidate into the box fields, and its mean luma and
// chroma. The scan covers the extent the region was grown over, which meets
// its cells in the order of a scan of the whole grid.
RegionMeans measure_candidate(Molo_FingerDetect& d, int area, const molo::RegionBox& extent) {
    const int w = d.down_width;
    const int h = d.down_height;
    const unsigned int label = static_cast<unsigned int>(d.best_label);
    d.box_top = h;
    d.box_left = w;
    d.box_bottom = 0;
    d.box_right = 0;
    float sum_y = 0.0f;
    float sum_u = 0.0f;
    float sum_v = 0.0f;
    for (int r = extent.top; r <= extent.bottom; ++r) {
        for (int c = extent.left; c <= extent.right; ++c) {
            const int i = r * w + c;
            if (d.label_map[i] != label) continue;
            if (r < d.box_top) d.box_top = r;
            if (r > d.box_bottom) d.box_bottom = r;
            if (c < d.box_left) d.box_left = c;
            if (c > d.box_right) d.box_right = c;
            const unsigned char* pair = molo::chroma_pair(d, r, c);
            sum_y += d.down_y[i];
            sum_u += pair[0];
            sum_v += pair[1];
        }
    }
    const float a = static_cast<float>(area);
    return {sum_y / a, sum_u / a, sum_v / a};
}

enum class ShapeTest { kTall, kWide, kPlain };

// Which shape test applies to the box. The right-edge rows compare box_left
// (not box_right) with the last column, so they match only a region confined
// to that column; this asymmetry with the left edge is kept (pinned by
// Decision.ShapeSizeAndDarknessLimits).
ShapeTest shape_test_for(const Molo_FingerDetect& d) {
    const int last_row = d.down_height - 1;
    const int last_col = d.down_width - 1;
    const int top = d.box_top;
    const int left = d.box_left;
    const int bottom = d.box_bottom;
    const int right = d.box_right;
    if (left == 0 && top > 0 && bottom < last_row) return ShapeTest::kTall;
    if (left == last_col && top == 0) return ShapeTest::kPlain;
    if (left == last_col && top > 0 && bottom == last_row) return ShapeTest::kPlain;
    if (left == last_col && top > 0 && bottom < last_row) return ShapeTest::kTall;
    if (top > 0) {
        return bottom == last_row && left > 0 && right < last_col ? ShapeTest::kWide
                                                                  : ShapeTest::kPlain;
    }
    return left > 0 && right < last_col ? ShapeTest::kWide : ShapeTest::kPlain;
}

// A tall region must touch the border along most of its height (and a wide
// one along most of its width), be shaped like something entering from the
// edge, and be at least as tall as wide (as wide as tall).
bool passes_shape(Molo_FingerDetect& d) {
    const ShapeTest test = shape_test_for(d);
    if (test == ShapeTest::kPlain) return d.CheckShape() != 0;
    const double border = static_cast<double>(d.region_stats[d.best_label].border_length);
    const int extent_h = d.box_bottom - d.box_top + 1;
    const int extent_w = d.box_right - d.box_left + 1;
    const int along = test == ShapeTest::kTall ? extent_h : extent_w;
    if (border * 1.2 < along) {
        d.CheckShape();  // runs for its profile only; the region already failed
        return false;
    }
    if (d.CheckShape() == 0) return false;
    return test == ShapeTest::kTall ? extent_h >= extent_w : extent_h <= extent_w;
}

// Reaches within 10 working pixels of a corner on the entry side.
bool anchored(const Molo_FingerDetect& d) {
    const int h = d.down_height;
    const int w = d.down_width;
    const bool near_top = d.box_top <= 10;
    const bool near_bottom = d.box_top > 10 && d.box_bottom >= h - 10;
    const bool near_side = d.orientation == 0 ? d.box_left <= 10 : d.box_right >= w - 10;
    return (near_top || near_bottom) && near_side;
}

// A very dark region must be at least 60 levels darker than its surround
// (the box grown by 5, clipped to the image). An empty surround passes.
bool dark_enough(const Molo_FingerDetect& d, float mean_y) {
    const int w = d.down_width;
    const int top = d.box_top > 5 ? d.box_top - 5 : 0;
    const int left = d.box_left > 5 ? d.box_left - 5 : 0;
    const int bottom = d.box_bottom + 5 < d.down_height - 1 ? d.box_bottom + 5 : d.down_height - 1;
    const int right = d.box_right + 5 < w - 1 ? d.box_right + 5 : w - 1;
    const unsigned int label = static_cast<unsigned int>(d.best_label);
    float sum = 0.0f;
    int count = 0;
    for (int r = top; r <= bottom; ++r) {
        for (int c = left; c <= right; ++c) {
            if (d.label_map[r * w + c] == label) continue;
            sum += d.down_y[r * w + c];
            ++count;
        }
    }
    const float surround = sum / static_cast<float>(count);
    return !(surround - mean_y < 60.0f);
}

// The root of a float is correctly rounded and so never decreases as its
// argument grows: sqrt(x) < 10 holds exactly for the x below the least float
// whose root rounds to 10 or more. Comparing squared distances with that
// bound gives the verdicts of the rooted comparison without a root per pixel.
float squared_bound_below_ten() {
    static const float bound = [] {
        float x = 100.0f;
        while (std::sqrt(std::nextafter(x, 0.0f)) >= 10.0f) x = std::nextafter(x, 0.0f);
        return x;
    }();
    return bound;
}

// True when more than 5 % of the frame has the candidate's colour: among the
// other skin pixels by chroma (only when skin covers over 5 % of the frame),
// then among all other pixels by luma and chroma.
//
// Both pixels of a chroma pair share its differences; the squares are formed
// once per pair and summed per pixel in the order of the formula,
// (du^2 + dy^2) + dv^2, so every pixel's figure is the one the formula gives.
bool colour_too_common(const Molo_FingerDetect& d, const RegionMeans& m) {
    const int w = d.down_width;
    const int h = d.down_height;
    const float n = static_cast<float>(w * h);
    const unsigned int label = static_cast<unsigned int>(d.best_label);
    const float near = squared_bound_below_ten();
    if (d.skin_ratio > 0.05f) {
        int count = 0;
        for (int r = 0; r < h; ++r) {
            for (int c = 0; c < w; ++c) {
                const int i = r * w + c;
                if (d.skin_mask[i] != 0xFF || d.label_map[i] == label) continue;
                const unsigned char* pair = molo::chroma_pair(d, r, c);
                const float dv = m.v - static_cast<float>(pair[1]);
                const float du = m.u - static_cast<float>(pair[0]);
                if (dv * dv + du * du < near) ++count;
            }
        }
        if (static_cast<float>(count) / n > 0.05f) return true;
    }
    int count = 0;
    for (int r = 0; r < h; ++r) {
        const unsigned char* const pairs = d.down_vu + (r / 2) * w;
        const unsigned char* const luma = d.down_y + r * w;
        const unsigned int* const labels = d.label_map + r * w;
        for (int c0 = 0; c0 < w; c0 += 2) {
            const float du = m.u - static_cast<float>(pairs[c0]);
            const float dv = m.v - static_cast<float>(pairs[c0 + 1]);
            const float du2 = du * du;
            const float dv2 = dv * dv;
            const int c1 = c0 + 1 < w ? c0 + 2 : c0 + 1;
            for (int c = c0; c < c1; ++c) {
                const float dy = m.y - static_cast<float>(luma[c]);
                count += labels[c] != label && (du2 + dy * dy) + dv2 < near;
            }
        }
    }
    return static_cast<float>(count) / n > 0.05f;
}

}  // namespace

namespace molo {

int decide(Molo_FingerDetect& d, int area, const RegionBox& extent, int* pos_row, int* pos_col) {
    const int w = d.down_width;
    const int h = d.down_height;
    const int n = w * h;
    const KindRules rules = kind_rules(d.finger_db[d.db_index].kind);
    const RegionMeans means = measure_candidate(d, area, extent);

    if (!passes_shape(d)) return reject(d, kNotFingerShape);

    if (!anchored(d) &&
        !(static_cast<float>(h) * 0.003f * static_cast<float>(w) <= static_cast<float>(area))) {
        return reject(d, "%d:position at middle but size is too small.\n");
    }

    if (means.y < 25.0f && !dark_enough(d, means.y)) return reject(d, "%d:Finger too dark.\n");

    if (means.y > 100.0f && rules.grey_test) return reject(d, "%d:gray object.\n");

    // Local copies of the plane pointers: a byte store could otherwise alias
    // the detector's fields and force them to be read again on every cell.
    unsigned char* const finger = d.finger_mask;
    const unsigned int* const labels = d.label_map;
    // The mask is cleared at this step: a colour rejection leaves it empty,
    // and otherwise it becomes 1 on the candidate's cells and 0 elsewhere.
    if (colour_too_common(d, means)) {
        std::memset(finger, 0, static_cast<size_t>(n));
        return reject(d, kSimilarColour);
    }
    const unsigned int label = static_cast<unsigned int>(d.best_label);
    for (int i = 0; i < n; ++i) finger[i] = labels[i] == label ? 1 : 0;

    if (!d.HarrisHough()) return reject(d, "%d:HarrisHough detection.\n");

    if (d.have_detect < INT_MAX) ++d.have_detect;  // a finger held for years stays reported
    if (d.log_enabled != 0) log_print(kLogDebug, "%d: have_detect:%d\n", d.db_index, d.have_detect);
    if (d.have_detect < MOLO_HAVE_DETECT_NUM) return 0;

    d.found_area = area;
    d.finger_found = 1;
    d.found_u = means.u;
    d.found_v = means.v;

    // Centroid of the finger mask, divided by the candidate's area (not by the
    // mask's pixel count, which gap filling may have changed), on purpose
    // (pinned by Decision.PositionDividesTheMasksSumsByTheCandidatesArea). A
    // zero area, possible only on tiny grids, gives position 0.
    int sum_row = 0;
    int sum_col = 0;
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) {
            if (finger[r * w + c] == 1) {
                sum_row += r;
                sum_col += c;
            }
        }
    }
    const int row = area != 0 ? sum_row / area * 8 : 0;
    const int col = area != 0 ? sum_col / area * 8 : 0;
    if (pos_row != nullptr) *pos_row = row;
    if (pos_col != nullptr) *pos_col = col;
    if (d.log_enabled != 0) {
        log_print(kLogDebug,
                  "%d: position(%d,%d), UV(%3.2f, %3.2f)"
                  "-------------------------------------------\n",
                  d.db_index, row, col, static_cast<double>(means.u), static_cast<double>(means.v));
    }
    timestamp(&d.detect_time);
    return 1;
}

}  // namespace molo
