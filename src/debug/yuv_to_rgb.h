// Conversion of one YUV pixel to RGB for the colour dumps.
#ifndef MOLO_DEBUG_YUV_TO_RGB_H
#define MOLO_DEBUG_YUV_TO_RGB_H

namespace molo {

struct Rgb {
    unsigned char r;
    unsigned char g;
    unsigned char b;
};

// Luma y and the chroma v, u as stored (centred on 128). The products and
// sums run in double precision on y, v - 128 and u - 128 as floats; each
// channel is then rounded to float and clamped to 0 .. 255 or truncated.
Rgb yuv_to_rgb(float y, float v, float u);

}  // namespace molo

#endif  // MOLO_DEBUG_YUV_TO_RGB_H
