/* The detector for a web page: one handle owns a detector and the frame
 * buffer the page writes each picture into (allocated once, at creation);
 * the page then asks for the frame to be analysed and reads the answer.
 * Nothing is allocated per frame. */
#ifndef MOLO_WEB_H
#define MOLO_WEB_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct MoloWeb MoloWeb;

/* What the detector has decided after a frame. */
enum MoloWebState {
    MOLO_WEB_SEARCHING = 0, /* nothing held: the next frame tries every finger tone */
    MOLO_WEB_HELD = 1,      /* the frame's candidate passed every test; the next may confirm it */
    MOLO_WEB_REPORTED = 2   /* a finger is reported, at (row, col) */
};

/* A detector for width x height frames; log != 0 switches on its diagnostic
 * messages (standard error, one line each). NULL for an unusable size. */
MoloWeb* molo_web_create(int width, int height, int log);

/* The frame buffer: luma, stride() bytes a row, height rows; then the
 * interleaved chroma, stride() bytes a row, (height + 1) / 2 rows. */
uint8_t* molo_web_frame(MoloWeb* web);
int molo_web_stride(const MoloWeb* web);

/* Analyses the picture in the frame buffer. orientation: side the finger
 * enters from, 0 left, 1 right. v_first: 1 when the chroma pairs are V,U
 * (NV21), 0 for U,V (NV12). Returns what the detector returned (1: finger
 * reported). */
int molo_web_analyse(MoloWeb* web, int orientation, int v_first, float gain, int color_temp);

/* The last analysed frame: state, reported centroid in frame pixels (valid
 * when reported). */
int molo_web_state(const MoloWeb* web);
int molo_web_row(const MoloWeb* web);
int molo_web_col(const MoloWeb* web);

/* The candidate region of held and reported frames, non-zero on its cells:
 * the detector's working grid, one cell per 8 x 8 frame pixels, of the size
 * below. */
int molo_web_working_width(const MoloWeb* web);
int molo_web_working_height(const MoloWeb* web);
const uint8_t* molo_web_finger_mask(const MoloWeb* web);

void molo_web_release(MoloWeb* web);

#ifdef __cplusplus
}
#endif

#endif /* MOLO_WEB_H */
