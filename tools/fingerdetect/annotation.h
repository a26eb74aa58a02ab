// Draws the detector's decision on a picture so that a clip can be watched
// with the decisions on it:
//   searching  a thin light-grey frame around the picture;
//   held       a dashed amber frame; the candidate region tinted amber and
//              boxed;
//   reported   a solid red frame; the finger region tinted red and boxed,
//              and a white cross on the reported centroid.
#ifndef MOLO_TOOL_ANNOTATION_H
#define MOLO_TOOL_ANNOTATION_H

#include <cstdint>

#include "decision_state.h"

class Molo_FingerDetect;

namespace fingerdetect {

// picture: planar 4:2:0 (Y, U, V) of width x height. The region is the
// detector's finger_mask (working cells of 8 x 8 frame pixels), read only
// for held and reported frames; (row, col) is the reported centroid.
void draw_decision(uint8_t* picture, int width, int height, DecisionState state,
                   const Molo_FingerDetect& detector, int row, int col);

}  // namespace fingerdetect

#endif  // MOLO_TOOL_ANNOTATION_H
