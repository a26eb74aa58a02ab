// What the detector has decided after a frame, read from the result and the
// detector's confirmation counter.
//
//   reported   the frame returned 1: a finger was confirmed (the candidate
//              passed every test on this frame and the previous one) and
//              its centroid was returned.
//   held       the frame returned 0 but have_detect is 1 or more: this frame's
//              candidate passed every test and waits for the next frame to
//              confirm it; the colour entry (db_index) is frozen, so the next
//              frame is tested against that entry only.
//   searching  have_detect is 0: nothing is held; the next frame is tried
//              against every colour entry the light allows.
#ifndef MOLO_TOOL_DECISION_STATE_H
#define MOLO_TOOL_DECISION_STATE_H

class Molo_FingerDetect;

namespace fingerdetect {

enum class DecisionState { kSearching, kHeld, kReported };

// result: what MoloFinDetect_Execute returned for the frame just analysed.
DecisionState decision_state(int result, const Molo_FingerDetect& detector);
const char* state_name(DecisionState state);

}  // namespace fingerdetect

#endif  // MOLO_TOOL_DECISION_STATE_H
