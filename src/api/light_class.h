#ifndef MOLO_API_LIGHT_CLASS_H
#define MOLO_API_LIGHT_CLASS_H

namespace molo {

// Light condition of a frame from sensor gain and white-balance temperature:
// 3 for warm light (below 3000 K, or below 3900 K at gains above 4.5), else 2
// for a gain under 1.02 (bright scene), else 1. The kelvin limits differ on
// purpose; a NaN gain counts as a high gain.
int light_class_of(float capture_gain, int color_temp);

}  // namespace molo

#endif  // MOLO_API_LIGHT_CLASS_H
