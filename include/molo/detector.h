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
                bool do_downsample, int src_stride, int ds_mode, float capture_gain,
                int color_temp, int* pos_row, int* pos_col);

    // Image preparation.
    void DownSampling(int src_stride, int ds_mode);
    void resize(unsigned char* in_y, unsigned char* in_vu, unsigned char* out_y,
                unsigned char* out_vu, int in_stride, int in_width, int in_height,
                int out_width, int out_height);

    // Region analysis.
    void ConnectedSet(Pixel seed, double tolerance, unsigned char* values, int width,
                      int height, int label, unsigned int* labels, int* count);
    int GetBorderLength(int label, int* position);
    unsigned int compute_perimeter(unsigned int* labels, int stride, int rows, int label);
    int CheckShape();
    void Erode();
    void Dilate();
    void FillInGap();

    // Edge, corner and line features. The two Sobel operators read and write
    // only their arguments, so they are safe to call from several threads.
    void Sobel3(unsigned char* plane, int row, int col, int width, int height,
                int* magnitude);
    void Sobel5(unsigned char* plane, int row, int col, int width, int* vertical, int* horizontal,
                int* reserved, int* angle);
    int HarrisCorner();
    double HoughLine();
    bool HarrisHough();
    void StraitLineDetect(int tolerance, int direction);

    // ---- State. Every field is zero until Initialize sets it. ----
    unsigned char* src_y{};   // luma plane of the frame being analysed (borrowed)
    unsigned char* src_vu{};  // interleaved chroma plane of that frame (borrowed)
    int height{};             // preview height in pixels
    int width{};              // preview width in pixels
    int src_stride{};         // row pitch of the source planes
    unsigned char* full_y_buf{};   // full-size scratch planes, kept for the footprint
    unsigned char* full_vu_buf{};
    unsigned char* down_y{};       // working luma
    unsigned char* down_vu{};      // working interleaved chroma, half resolution
    int down_height{};
    int down_width{};
    unsigned char* skin_mask{};      // 0xFF where colour matches and luma is flat
    unsigned char* seed_map_full{};  // 1 left seed, 2 right seed, 0 none
    unsigned char* seed_map_band{};
    Pixel* region_queue{};           // work queue of ConnectedSet, one per cell
    unsigned int* label_map{};       // 0 not grown, 1 not a candidate, 2+ region label
    int frame_count{};               // execute calls that passed the busy guard
    int* grad_xx{};
    int* grad_yy{};
    int* grad_xy{};
    int best_label{};
    float* color_dist{};         // chroma distance of each pixel to the active entry
    RegionStat* region_stats{};  // indexed by label
    float found_u{};
    float found_v{};
    float ref_u{};
    float ref_v{};
    int finger_found{};
    long long detect_time{};
    int have_detect{};  // consecutive frames whose candidate passed every test
    int db_index{};     // active colour entry
    int found_area{};
    unsigned char* finger_mask{};  // 1 on the candidate region
    unsigned char* edge_map{};     // outline of the candidate; morphology scratch
    unsigned char busy{};          // re-entrancy guard of execute
    int min_area{};
    int max_area{};
    float skin_ratio{};
    int** blur_kernel{};  // 7 x 7 Gaussian weights of the corner stage
    int blur_kernel_sum{};
    int orientation{};
    int* corner_response{};
    float best_compactness{};
    int scan_row_end{};
    int scan_col_end{};
    int straight_run_best{};
    int straight_run_second{};
    int edge_count{};
    int box_top{};
    int box_left{};
    int box_bottom{};
    int box_right{};
    int light_class{};
    float line_dist_sum{};
    int line_run{};
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
    int second_run{};
    float second_dist_sum{};
    int cross_row{};
    int cross_col{};
    float corner_line_dist{};
    int near_angles[31]{};
    FingerColor finger_db[MOLO_FINGER_DB_SIZE]{};
    float* shape_profile{};  // CheckShape scratch, max(width, height) of the working grid
    float* sin_table{};
    float* cos_table{};
    int* hough_acc{};
    int hough_diag{};
    int hough_rho_count{};
    int hough_angles{};
    int hough_acc_size{};
    int db_count{};    // colour entries cycled through while searching
    int log_enabled{};
    // The hough_voted_rows rho rows of hough_acc from hough_voted_low on hold
    // the last vote of HoughLine and every other cell is 0; HoughLine clears
    // only those rows before it votes again. The library is the only writer
    // of hough_acc: a client that writes into it leaves stale counts behind.
    int hough_voted_low{};
    int hough_voted_rows{};
};

#endif  // MOLO_DETECTOR_H
