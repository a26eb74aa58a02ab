#include "detector/colour_rules.h"

namespace molo {

int light_class_of(float capture_gain, int color_temp) {
    const int provisional = capture_gain < 1.02f ? kLightBright : kLightPlain;
    if (capture_gain > 4.5f) return color_temp > 3899 ? provisional : kLightWarm;
    return color_temp > 2999 ? provisional : kLightWarm;
}

bool light_allows(int light_class, int kind) {
    switch (light_class) {
        case kLightPlain: return kind != kKindBand && kind != kKindBandGrey;
        case kLightBright: return kind != kKindBand;
        case kLightWarm: return kind != kKindBandGrey;
        default: return true;
    }
}

KindRules kind_rules(int kind) {
    //                           band   max area  compactness  grey
    switch (kind) {
        case kKindFullGrey: return {false, 0.12f, 1.42f, true};
        case kKindBand: return {true, 0.05f, 1.1f, false};
        case kKindBandGrey: return {true, 0.05f, 1.42f, true};
        default: return {false, 0.12f, 1.42f, false};
    }
}

}  // namespace molo
