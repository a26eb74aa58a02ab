#include "api/light_class.h"

namespace molo {

int light_class_of(float capture_gain, int color_temp) {
    const int provisional = capture_gain < 1.02f ? 2 : 1;
    if (capture_gain > 4.5f) return color_temp > 3899 ? provisional : 3;
    return color_temp > 2999 ? provisional : 3;
}

}  // namespace molo
