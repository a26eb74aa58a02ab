// The detector object: every buffer, table and per-frame figure of one
// preview size, and the methods that work on them in place.
#ifndef MOLO_DETECTOR_H
#define MOLO_DETECTOR_H

#include "molo/export.h"
#include "molo/types.h"

// Number of finger tones in the built-in colour table.
#define MOLO_FINGER_DB_SIZE 5
// Consecutive passing frames needed before a finger is reported.
#define MOLO_HAVE_DETECT_NUM 2
// Codes returned by Initialize (and logged by MoloFinDetect_Initialize).
#define MOLO_INIT_OK 0
#define MOLO_INIT_BAD_SIZE (-1)   // preview extent above 16384 pixels
#define MOLO_INIT_NO_MEMORY (-2)  // a buffer could not be allocated

class MOLO_EXPORT Molo_FingerDetect {
public:
    Molo_FingerDetect() = default;
    // Buffers are released by Finalize only; destruction frees nothing else.
    virtual ~Molo_FingerDetect() = default;

    // Lifecycle and colour table.
    int Initialize(int width, int height, char* db_path);
    void Finalize(char* db_path, int save_db);
    int ReadDB(char* db_path);
    int WriteDB(char* db_path);
    void Sort_FingerDB();
    int Verification(unsigned char* y_plane, unsigned char* vu_plane, int, int, int, int);

    // One frame: 1 when a finger is reported (position in full-frame pixels), else 0.
    int execute(unsigned char* y_plane, unsigned char* vu_plane, int orientation,
                bool do_downsample, int src_stride, int ds_mode, float capture_gain, int color_temp,
                int* pos_row, int* pos_col);

    // Image preparation.
    void DownSampling(int src_stride, int ds_mode);
    void resize(unsigned char* in_y, unsigned char* in_vu, unsigned char* out_y,
                unsigned char* out_vu, int in_stride, int in_width, int in_height, int out_width,
                int out_height);

    // Region analysis.
    void ConnectedSet(Pixel seed, double tolerance, unsigned char* values, int width, int height,
                      int label, unsigned int* labels, int* count);
    int GetBorderLength(int label, int* position);
    unsigned int compute_perimeter(unsigned int* labels, int stride, int rows, int label);
    int CheckShape();
    void Erode();
    void Dilate();
    void FillInGap();

    // Edge, corner and line features. The two Sobel operators read and write
    // only their arguments, so they are safe to call from several threads.
    void Sobel3(unsigned char* plane, int row, int col, int width, int height, int* magnitude);
    void Sobel5(unsigned char* plane, int row, int col, int width, int* vertical, int* horizontal,
                int* reserved, int* angle);
    int HarrisCorner();
    double HoughLine();
    bool HarrisHough();
    void StraitLineDetect(int tolerance, int direction);

    // ---- State. Every field is zero until Initialize sets it. ----
    // The order of the fields is part of the public interface (clients and
    // the bindings read them in place), so they keep their places and each
    // notes its stage, who writes it (the stage) and who reads it. By stage:
    //   setup     Initialize, once per handle: the sizes, every buffer, the
    //             seed maps, finger_db, the Hough tables, blur_kernel,
    //             log_enabled; Finalize releases the buffers
    //   search    MoloFinDetect_Execute's entry search: light_class, db_count
    //   frame     execute, per call: src_*, down_y, down_vu, skin_mask,
    //             region_queue, label_map, frame_count, best_label,
    //             color_dist, region_stats, ref_u, ref_v, db_index, busy,
    //             min_area, max_area, skin_ratio, orientation,
    //             best_compactness
    //   decision  the candidate's tests, confirmation and report: box_*,
    //             finger_mask, have_detect, found_*, finger_found, detect_time
    //   shape     CheckShape and FillInGap: shape_profile, finger_mask
    //   corner    HarrisCorner: grad_*, corner_response, scan_*_end,
    //             corner_row, corner_col
    //   hough     HoughLine and HarrisHough: edge_map, edge_count, hough_acc,
    //             hough_voted_*, the line figures, cross_*, corner_line_dist
    //   StraitLineDetect (called by clients only): straight_run_*
    // [footprint] marks a buffer kept only so that the memory footprint is
    // that of a full-resolution path; [clients] a field the library writes
    // but never reads, kept for clients to inspect.
    unsigned char* src_y{};   // frame: luma plane of this frame (borrowed); read by DownSampling
    unsigned char* src_vu{};  // frame: its interleaved chroma plane (borrowed); read likewise
    int height{};             // setup: preview height in pixels
    int width{};              // setup: preview width in pixels
    int src_stride{};         // frame: row pitch of the source planes, stored by execute
    unsigned char* full_y_buf{};     // setup [footprint]: full-size luma scratch, never used
    unsigned char* full_vu_buf{};    // setup [footprint]: full-size chroma scratch, never used
    unsigned char* down_y{};         // frame: working luma (DownSampling); read by every stage
    unsigned char* down_vu{};        // frame: working interleaved chroma, half resolution, likewise
    int down_height{};               // setup: working grid rows (an eighth, made even)
    int down_width{};                // setup: working grid columns
    unsigned char* skin_mask{};      // frame: 0xFF where colour matches, luma flat; for decision
    unsigned char* seed_map_full{};  // setup: 1 left seed, 2 right seed, 0 none; read by frame
    unsigned char* seed_map_band{};  // setup: the same for band entries; read by frame
    Pixel* region_queue{};           // frame: work queue of ConnectedSet, one per cell
    // frame: 0 not grown, 1 not a candidate, 2+ region label; read by decision, shape
    unsigned int* label_map{};
    int frame_count{};           // frame: calls past the busy guard; picks the entry
    int* grad_xx{};              // corner: gradient products of HarrisCorner, its own scratch
    int* grad_yy{};              // corner
    int* grad_xy{};              // corner
    int best_label{};            // frame: label of the candidate; read by decision, shape
    float* color_dist{};         // frame: chroma distance of each pixel to the active entry
    RegionStat* region_stats{};  // frame: indexed by label; read by decision, shape
    float found_u{};             // decision [clients]: mean first chroma byte of the last report
    float found_v{};             // decision [clients]: mean second chroma byte of the last report
    float ref_u{};               // frame: centre of the active entry, copied from finger_db
    float ref_v{};               // frame
    int finger_found{};          // decision [clients]: 1 once a finger has been reported
    long long detect_time{};     // decision [clients]: timestamp of the last report
    // decision: consecutive frames whose candidate passed every test; read by search, frame
    int have_detect{};
    int db_index{};    // frame: active colour entry; read by decision and every message
    int found_area{};  // decision [clients]: area of the last reported region
    // decision: 1 on the candidate region; read and changed by shape, corner, hough
    unsigned char* finger_mask{};
    unsigned char* edge_map{};  // hough: outline of the candidate; scratch of Erode and Dilate
    unsigned char busy{};       // frame: re-entrancy guard, set and cleared by execute
    int min_area{};             // frame: least candidate area of this frame
    int max_area{};             // frame: largest candidate area of this frame
    float skin_ratio{};         // frame: share of skin pixels; read by decision
    int** blur_kernel{};        // setup: 7 x 7 Gaussian weights of the corner stage
    int blur_kernel_sum{};      // setup: their sum
    int orientation{};          // frame: entry side of this frame; read by decision, shape
    int* corner_response{};     // corner: response map of HarrisCorner
    float best_compactness{};   // frame [clients]: compactness of the candidate
    int scan_row_end{};  // corner: rows the corner stage differentiates; read by StraitLineDetect
    int scan_col_end{};  // corner: columns likewise
    int straight_run_best{};    // StraitLineDetect [clients]: longest run
    int straight_run_second{};  // StraitLineDetect [clients]: second run
    int edge_count{};           // hough: outline pixels of edge_map; read by the verdict
    // decision: the candidate's bounding box, inclusive; read by shape, corner, hough
    int box_top{};
    int box_left{};
    int box_bottom{};
    int box_right{};
    int light_class{};  // search: light class of the frame (1 to 3); read by frame
    // hough and corner: HoughLine's lines, HarrisCorner's corner and their
    // crossing, all read by HarrisHough's verdict except where marked.
    float line_dist_sum{};
    int line_run{};  // [clients]
    int line_longest_run{};
    int peak_votes{};
    int peak_angle{};
    int peak_rho{};
    int corner_row{};
    int corner_col{};
    int second_votes{};
    int second_angle{};
    int second_rho{};
    int second_longest_run{};
    int second_run{};         // [clients]
    float second_dist_sum{};  // [clients]
    int cross_row{};
    int cross_col{};
    float corner_line_dist{};
    int near_angles[31]{};  // hough: HoughLine's own list of angles near the peak
    // setup: the colour table, filled by ReadDB; read by frame, decision
    FingerColor finger_db[MOLO_FINGER_DB_SIZE]{};
    float* shape_profile{};  // shape: CheckShape scratch, max(width, height) of the working grid
    float* sin_table{};      // setup: sine of HoughLine's angles; read by hough
    float* cos_table{};      // setup: cosine of them
    int* hough_acc{};        // hough: HoughLine's accumulator
    int hough_diag{};        // setup: diagonal of the working grid; read by hough
    int hough_rho_count{};   // setup: rho rows of hough_acc
    int hough_angles{};      // setup: angle columns of hough_acc
    int hough_acc_size{};    // setup [clients]: cells of hough_acc
    int db_count{};          // search: colour entries cycled through while searching; read by frame
    int log_enabled{};  // setup: diagnostic logging switch; read wherever a message is optional
    // hough: the hough_voted_rows rho rows of hough_acc from hough_voted_low
    // on hold the last vote of HoughLine and every other cell is 0;
    // HoughLine clears only those rows before it votes again. The library is
    // the only writer of hough_acc: a client that writes into it leaves
    // stale counts behind.
    int hough_voted_low{};
    int hough_voted_rows{};
};

#endif  // MOLO_DETECTOR_H
