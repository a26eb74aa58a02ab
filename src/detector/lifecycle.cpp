// Initialize and Finalize: every buffer a frame needs is allocated here once,
// so per-frame processing allocates nothing.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "detector/seed_maps.h"
#include "detector/working_size.h"
#include "features/hough_rho.h"
#include "molo/detector.h"
#include "molo/support.h"
#include "support/log.h"

namespace {

using molo::kHoughAngles;

// Zero-filled storage for n elements plus `pad` readable zero elements after
// them. Byte planes carry one padding byte: the 3 x 3 gradient at the last
// column of the first and last rows reads one byte past the row, at the very
// last pixel one past the plane.
template <typename T>
bool allocate(T*& p, size_t n, size_t pad = 0) {
    p = static_cast<T*>(std::calloc(n + pad, sizeof(T)));
    return p != nullptr;
}

template <typename T>
void release(T*& p) {
    std::free(p);
    p = nullptr;
}

}  // namespace

int Molo_FingerDetect::Initialize(int width_, int height_, char* db_path) {
    // A negative extent is a preview of no pixels.
    height = std::max(height_, 0);
    width = std::max(width_, 0);
    log_enabled = 0;

    char value[92];
    android_property_get("Molo.FingerDetection.enable.log", value, "0");
    log_enabled = std::atoi(value);

    down_height = molo::working_extent(height);
    down_width = molo::working_extent(width);

    // The banner ends in a blank before its newline (pinned by
    // Initialize.TablesPaddingBannerAndLoggingProperty).
    molo::log_print(molo::kLogDebug, "Quillby FingerDetect Date:05/11/17, HAVE_DETECT_NUM 2 \n");

    if (width > molo::kMaxPreviewExtent || height > molo::kMaxPreviewExtent) {
        down_width = down_height = 0;
        return MOLO_INIT_BAD_SIZE;
    }

    const int w = down_width;
    const int h = down_height;
    // A grid without cells (a preview under 16 pixels in either direction)
    // still gets one cell of storage in every plane: the tests of an empty
    // candidate visit cell (0, 0) of its empty bounding box.
    const size_t n = std::max<size_t>(static_cast<size_t>(w) * h, 1);
    const size_t full = static_cast<size_t>(width) * height;

    hough_diag = static_cast<int>(std::sqrt(static_cast<double>(h * h + w * w)));
    hough_angles = kHoughAngles;
    hough_rho_count = 2 * hough_diag;
    hough_acc_size = hough_rho_count * hough_angles;

    bool ok = allocate(down_y, n, 1) &&
              allocate(down_vu, std::max<size_t>(static_cast<size_t>(h / 2) * (w / 2) * 2, 2), 1) &&
              allocate(skin_mask, n, 1) && allocate(seed_map_full, n, 1) &&
              allocate(seed_map_band, n, 1) &&
              // One zero row below the label plane: the perimeter count reads
              // below the bottom-left cell and past the bottom-right one.
              allocate(label_map, n, w) && allocate(finger_mask, n, 1) &&
              allocate(edge_map, n, 1) && allocate(color_dist, n) &&
              // Side-edge shape profiles are indexed by row.
              allocate(shape_profile, static_cast<size_t>(std::max({w, h, 1}))) &&
              allocate(grad_xx, n) && allocate(grad_yy, n) && allocate(grad_xy, n) &&
              allocate(corner_response, n) && allocate(region_queue, n) &&
              allocate(full_y_buf, full, 1) && allocate(full_vu_buf, full / 2, 1) &&
              // Hole filling can give every cell of the grid its own label.
              allocate(region_stats, std::max<size_t>(n + 2, 256)) &&
              allocate(sin_table, kHoughAngles) && allocate(cos_table, kHoughAngles) &&
              // One spare rho row: the nearest rho index can reach 2 * hough_diag.
              allocate(hough_acc, static_cast<size_t>(hough_acc_size), kHoughAngles);
    if (ok) {
        blur_kernel = allocate_int_matrix(7, 7);
        ok = blur_kernel != nullptr && blur_kernel[0] != nullptr;
    }
    if (!ok) {
        Finalize(db_path, 0);
        down_width = down_height = 0;
        return MOLO_INIT_NO_MEMORY;
    }

    ReadDB(db_path);

    // The angle step uses the single-precision constant 3.141592f on purpose
    // (pinned by Initialize.TablesPaddingBannerAndLoggingProperty).
    const float step = 3.141592f / 180;
    for (int k = 0; k < kHoughAngles; ++k) {
        const float angle = static_cast<float>(k) * step;
        sin_table[k] = static_cast<float>(std::sin(static_cast<double>(angle)));
        cos_table[k] = static_cast<float>(std::cos(static_cast<double>(angle)));
    }

    exponential(blur_kernel, 7, 7, 3.0f);
    blur_kernel_sum = 0;
    for (int r = 0; r < 7; ++r) {
        for (int c = 0; c < 7; ++c) blur_kernel_sum += blur_kernel[r][c];
    }

    have_detect = 0;
    finger_found = 0;
    detect_time = 0;
    busy = 0;
    frame_count = 0;

    molo::build_seed_maps(seed_map_full, seed_map_band, w, h);

    // The row loops' settings message keeps its old text (pinned by
    // Initialize.TablesPaddingBannerAndLoggingProperty).
    if (log_enabled != 0) molo::log_print(molo::kLogDebug, "No Symphony setting\n");
    return MOLO_INIT_OK;
}

// Releases every buffer. The pointers are reset so that a second Finalize, or
// a Finalize after a failed Initialize, releases nothing twice.
void Molo_FingerDetect::Finalize(char* db_path, int save_db) {
    busy = 0;
    log_enabled = 0;
    if (save_db == 1) WriteDB(db_path);
    release(down_y);
    release(down_vu);
    release(skin_mask);
    release(label_map);
    release(seed_map_full);
    release(color_dist);
    release(finger_mask);
    release(edge_map);
    release(full_y_buf);
    release(full_vu_buf);
    release(grad_xx);
    release(grad_yy);
    release(grad_xy);
    release(corner_response);
    release(seed_map_band);
    release(sin_table);
    release(cos_table);
    release(hough_acc);
    release(shape_profile);
    release(region_stats);
    if (blur_kernel != nullptr) free_matrix(reinterpret_cast<void**>(blur_kernel));
    blur_kernel = nullptr;
    release(region_queue);
}
