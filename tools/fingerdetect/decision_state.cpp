#include "decision_state.h"

#include "MoloFingerDetect.h"

namespace fingerdetect {

DecisionState decision_state(int result, const Molo_FingerDetect& detector) {
    if (result == 1) return DecisionState::kReported;
    return detector.have_detect > 0 ? DecisionState::kHeld : DecisionState::kSearching;
}

const char* state_name(DecisionState state) {
    switch (state) {
        case DecisionState::kReported: return "reported";
        case DecisionState::kHeld: return "held";
        case DecisionState::kSearching: break;
    }
    return "searching";
}

}  // namespace fingerdetect
