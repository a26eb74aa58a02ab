// The per-frame analysis up to the finger candidate: downsampling, colour
// entry, skin mask, region growing from the seed zones of the entry side, and
// the choice of the region that best matches the colour and is compact.
#include <cmath>
#include <cstddef>
#include <cstring>

#include "detector/colour_rules.h"
#include "detector/decision.h"
#include "detector/rejection.h"
#include "features/sobel3_window.h"
#include "regions/perimeter.h"
#include "molo/detector.h"
#include "support/log.h"

namespace {

constexpr int kFirstRegionLabel = 2;
constexpr int kLastRegionLabel = 255;
constexpr int kFlatGradientLimit = 60;
constexpr int kMinBorderLength = 10;
constexpr int kFavouredBorderPositions = 10;

// The frame counter runs for the life of the handle; it wraps instead of
// overflowing, and the entry index drawn from it stays in range.
void count_frame(Molo_FingerDetect& d) {
    d.frame_count = static_cast<int>(static_cast<unsigned int>(d.frame_count) + 1u);
}

// The busy flag of one execute call: set once the call has passed the guard,
// and cleared when the call ends, whichever way it ends, unless kept.
class BusyHold {
public:
    explicit BusyHold(unsigned char& busy) : busy_(busy) { busy_ = 1; }
    ~BusyHold() {
        if (!kept_) busy_ = 0;
    }
    BusyHold(const BusyHold&) = delete;
    BusyHold& operator=(const BusyHold&) = delete;
    void keep() { kept_ = true; }

private:
    unsigned char& busy_;
    bool kept_ = false;
};

// Pairs are tested against the radius in blocks of this many; a block
// without a pair inside the radius is passed over after one vector compare.
constexpr int kPairBlock = 8;

// Pixels whose chroma lies within the entry's radius and whose luma is flat
// become 0xFF in skin_mask. Every pixel's distance is kept in color_dist for
// the regions' mean distances. Returns the number of skin pixels.
//
// A chroma pair serves the 2 x 2 working pixels at rows 2pr, 2pr + 1 and
// columns 2pc, 2pc + 1, so its distance is computed once and given to all
// four; it is the same value the per-pixel formula gives each of them.
int build_skin_mask(Molo_FingerDetect& d, float radius) {
    const int w = d.down_width;
    const int h = d.down_height;
    const float ref_u = d.ref_u;
    const float ref_v = d.ref_v;
    unsigned char* const mask = d.skin_mask;
    const unsigned char* const luma = d.down_y;
    const int pair_count = (w + 1) / 2;
    int count = 0;
    for (int r0 = 0; r0 < h; r0 += 2) {
        const int rows = r0 + 1 < h ? 2 : 1;
        const unsigned char* const pairs = d.down_vu + (r0 / 2) * w;
        float* const dist_row = d.color_dist + r0 * w;
        // The pair distances are computed first, in one loop the compiler
        // vectorizes, into storage that is overwritten afterwards: the second
        // row of the pair row, or the tail of a last, single row.
        float* const pair_dist = rows == 2 ? dist_row + w : dist_row + (w - pair_count);
        for (int k = 0; k < pair_count; ++k) {
            const float dv = static_cast<float>(pairs[2 * k + 1]) - ref_v;
            const float du = static_cast<float>(pairs[2 * k]) - ref_u;
            pair_dist[k] = std::sqrt(dv * dv + du * du);
        }
        // The pixels of a pair inside the radius are skin where the luma is flat.
        for (int k0 = 0; k0 < pair_count; k0 += kPairBlock) {
            const int k1 = k0 + kPairBlock < pair_count ? k0 + kPairBlock : pair_count;
            int inside = 0;
            for (int k = k0; k < k1; ++k) inside |= pair_dist[k] < radius ? 1 : 0;
            if (inside == 0) continue;
            for (int k = k0; k < k1; ++k) {
                if (!(pair_dist[k] < radius)) continue;
                const int c_end = 2 * k + 2 < w ? 2 * k + 2 : w;
                for (int r = r0; r < r0 + rows; ++r) {
                    for (int c = 2 * k; c < c_end; ++c) {
                        if (molo::flat_below(molo::sobel3_squared(luma, r, c, w, h),
                                             kFlatGradientLimit)) {
                            mask[r * w + c] = 0xFF;
                            ++count;
                        }
                    }
                }
            }
        }
        // Pixels 2k and 2k + 1 take pair k. Spread from the left, the stores
        // reach the tail of a single row only where it has been read.
        const int whole_pairs = w / 2;
        for (int k = 0; k < whole_pairs; ++k) {
            dist_row[2 * k] = pair_dist[k];
            dist_row[2 * k + 1] = pair_dist[k];
        }
        if (w % 2 != 0) dist_row[w - 1] = pair_dist[whole_pairs];
        if (rows == 2) std::memcpy(dist_row + w, dist_row, static_cast<size_t>(w) * sizeof(float));
    }
    return count;
}

// Cells are scanned in blocks of a fixed size, which the compiler turns into
// vector compares; only a block holding a seed cell is looked at cell by
// cell.
constexpr int kScanBlock = 16;

// Grows one region from every not-yet-grown skin pixel of the entry side's
// seed zone, in row-major order, and keeps each region's extent (its cells
// are the queue's first records right after the growth) so that later scans
// of one region visit only its rows and columns. Returns one past the last
// label given, or 0 when more regions than labels were found.
int grow_regions(Molo_FingerDetect& d, const unsigned char* seeds, unsigned char seed_value,
                 molo::RegionBox* extents) {
    const int w = d.down_width;
    const int h = d.down_height;
    const int n = w * h;
    const unsigned int* const labels = d.label_map;
    int label = kFirstRegionLabel;
    // Row-major order is the order of the plane, so one pass over the cell
    // index visits the seeds in the order of the rows.
    auto grow_from = [&](int i) {
        if (seeds[i] != seed_value || labels[i] != 0) return true;
        int count = 0;
        d.ConnectedSet(Pixel{i / w, i % w}, 1.0, d.skin_mask, w, h, label, d.label_map, &count);
        d.region_stats[label].area = static_cast<float>(count);
        molo::RegionBox box{d.down_height, d.down_width, -1, -1};
        for (int k = 0; k < count; ++k) {
            const Pixel p = d.region_queue[k];
            box.top = p.row < box.top ? p.row : box.top;
            box.bottom = p.row > box.bottom ? p.row : box.bottom;
            box.left = p.col < box.left ? p.col : box.left;
            box.right = p.col > box.right ? p.col : box.right;
        }
        extents[label] = box;
        ++label;
        return label <= kLastRegionLabel;
    };
    int i = 0;
    for (; i + kScanBlock <= n; i += kScanBlock) {
        unsigned char seeded = 0;
        for (int k = 0; k < kScanBlock; ++k) seeded |= seeds[i + k] == seed_value;
        if (seeded == 0) continue;
        for (int k = 0; k < kScanBlock; ++k) {
            if (!grow_from(i + k)) return 0;
        }
    }
    for (; i < n; ++i) {
        if (!grow_from(i)) return 0;
    }
    return label;
}

// The region's distances summed in row-major order over its extent, which
// meets its cells in the order of a scan of the whole grid.
float mean_color_distance(const Molo_FingerDetect& d, int label, const molo::RegionBox& box) {
    const int w = d.down_width;
    const unsigned int mark = static_cast<unsigned int>(label);
    float sum = 0.0f;
    for (int r = box.top; r <= box.bottom; ++r) {
        const unsigned int* const labels = d.label_map + r * w;
        const float* const dist = d.color_dist + r * w;
        for (int c = box.left; c <= box.right; ++c) {
            if (labels[c] == mark) sum += dist[c];
        }
    }
    return sum / d.region_stats[label].area;
}

// Among the grown regions that are large enough, touch enough of the entry
// side's border and are compact, picks the one with the smallest mean colour
// distance (favoured by one radius when its border starts near the corner).
// On equal distances the lower label wins. Returns the candidate's area, 0
// when none qualified.
int choose_candidate(Molo_FingerDetect& d, int end_label, const molo::RegionBox* extents,
                     float radius, float compactness_limit) {
    float best_bound = 1000.0f;
    int best_area = 0;
    for (int label = kFirstRegionLabel; label < end_label; ++label) {
        RegionStat& stat = d.region_stats[label];
        if (stat.area < static_cast<float>(d.min_area)) continue;
        stat.border_length = d.GetBorderLength(label, &stat.border_position);
        if (stat.border_length <= kMinBorderLength) continue;
        const molo::RegionBox& box = extents[label];
        float m = mean_color_distance(d, label, box);
        if (stat.border_position < kFavouredBorderPositions) m -= radius;
        if (!(m < best_bound)) continue;
        // The perimeter count carries two fractional bits: a quarter of it is
        // the perimeter the compactness limits are set for.
        const unsigned int count =
            molo::perimeter_count(d.label_map, d.down_width, d.down_height, label, box.top,
                                  box.bottom + 1, box.left, box.right + 1);
        const double perimeter = static_cast<double>(count) / 4.0;
        const float compactness =
            static_cast<float>(perimeter / std::sqrt(static_cast<double>(stat.area)));
        if (!(compactness < compactness_limit)) continue;
        d.best_label = label;
        best_bound = m;
        stat.compactness = compactness;
        d.best_compactness = compactness;
        best_area = static_cast<int>(stat.area);
    }
    return best_area;
}

int largest_area(const Molo_FingerDetect& d, int end_label) {
    float largest = 0.0f;
    for (int label = kFirstRegionLabel; label < end_label; ++label) {
        if (d.region_stats[label].area > largest) largest = d.region_stats[label].area;
    }
    return static_cast<int>(largest);
}

}  // namespace

int Molo_FingerDetect::execute(unsigned char* y_plane, unsigned char* vu_plane, int orientation_,
                               bool do_downsample, int stride, int ds_mode, float /*capture_gain*/,
                               int /*color_temp*/, int* pos_row, int* pos_col) {
    // A detector without working planes (never or not successfully
    // initialised, or finalised) has nothing to analyse.
    if (down_y == nullptr) return 0;
    src_stride = stride;
    if (busy != 0) return 0;
    BusyHold hold(busy);
    src_y = y_plane;
    src_vu = vu_plane;

    if (do_downsample) DownSampling(stride, ds_mode);

    // While searching, every call tries the next colour entry; while a
    // detection is held the entry stays frozen. A detector driven directly,
    // before any warm-up call has set db_count, uses entry 0.
    if (have_detect == 0) {
        db_index = db_count > 0 ? static_cast<int>(static_cast<unsigned int>(frame_count) %
                                                   static_cast<unsigned int>(db_count))
                                : 0;
    }
    const FingerColor entry = finger_db[db_index];
    const molo::KindRules rules = molo::kind_rules(entry.kind);

    if (!molo::light_allows(light_class, entry.kind)) {
        count_frame(*this);
        return 0;
    }

    ref_u = entry.ref_u;
    ref_v = entry.ref_v;
    count_frame(*this);
    orientation = orientation_;

    // The one call that keeps busy set: an unknown orientation leaves the
    // detector busy for good, so every later call returns 0. This lock-out is
    // deliberate (pinned by CApi.WrongOrientationLocksTheDetectorOut).
    if (static_cast<unsigned int>(orientation) > 1) {
        molo::log_print(molo::kLogError, "error! orientation is wrong.\n");
        hold.keep();
        return 0;
    }

    const int w = down_width;
    const int h = down_height;
    const int n = w * h;
    min_area = static_cast<int>(static_cast<float>(n) * 0.0023f);
    max_area = static_cast<int>(static_cast<float>(n) * rules.max_area_share);

    std::memset(skin_mask, 0, static_cast<size_t>(n));
    const int skin_count = build_skin_mask(*this, entry.radius);
    skin_ratio = static_cast<float>(skin_count) / static_cast<float>(n);
    if (skin_ratio > 0.3f)
        return molo::reject(*this, "%d:too many finger pixel at all over area\n");

    {
        const unsigned char* const mask = skin_mask;
        unsigned int* const labels = label_map;
        int i = 0;
        for (; i + kScanBlock <= n; i += kScanBlock) {
            unsigned char block[kScanBlock];  // a local copy cannot alias the labels
            std::memcpy(block, mask + i, sizeof block);
            for (int k = 0; k < kScanBlock; ++k) labels[i + k] = block[k] == 0 ? 1u : 0u;
        }
        for (; i < n; ++i) labels[i] = mask[i] == 0 ? 1u : 0u;
    }

    const unsigned char* seeds = rules.band_seeds ? seed_map_band : seed_map_full;
    const unsigned char seed_value = orientation == 0 ? 1 : 2;
    molo::RegionBox extents[kLastRegionLabel + 1];
    const int end_label = grow_regions(*this, seeds, seed_value, extents);
    if (end_label == 0) {
        return molo::reject(*this, "%d:too many skin tone area. it should not be a finger.\n");
    }

    const int best_area =
        choose_candidate(*this, end_label, extents, entry.radius, rules.compactness_limit);
    if (best_area > max_area) return molo::reject(*this, "%d:area is too big.\n");
    if (best_area < min_area) {
        const int largest = log_enabled != 0 ? largest_area(*this, end_label) : 0;
        return molo::reject(*this, "%d:area is too small or big eccentricity. max_area was:%d\n",
                            largest);
    }
    // Without a candidate of this frame (possible only when the least area
    // is 0, on the smallest grids) best_label is the previous frame's, whose
    // cells may lie anywhere: the whole grid is its extent.
    const molo::RegionBox extent =
        best_area > 0 ? extents[best_label] : molo::RegionBox{0, 0, h - 1, w - 1};
    return molo::decide(*this, best_area, extent, pos_row, pos_col);
}
