#include "molo_web.h"

#include <cstdlib>

#include "MoloFingerDetect.h"

#ifdef __EMSCRIPTEN__
#include <emscripten/emscripten.h>
#define MOLO_WEB_API EMSCRIPTEN_KEEPALIVE
#else
#define MOLO_WEB_API
#endif

struct MoloWeb {
    Molo_FingerDetect* detector;
    uint8_t* frame;  // luma rows, then chroma rows, one stride
    int width;
    int height;
    int stride;
    int state;
    int row;
    int col;
};

namespace {

// The library reads its logging switch from this property when a detector
// is created; off Android the property is an environment variable.
constexpr char kLogProperty[] = "Molo.FingerDetection.enable.log";

}  // namespace

extern "C" {

MOLO_WEB_API MoloWeb* molo_web_create(int width, int height, int log) {
    if (width < 1 || height < 1) return nullptr;
    // An odd width still holds whole chroma pairs in a row of even pitch.
    const int stride = width + (width & 1);
    const size_t bytes = static_cast<size_t>(stride) * (height + (height + 1) / 2);
    MoloWeb* web = static_cast<MoloWeb*>(std::calloc(1, sizeof(MoloWeb)));
    if (web == nullptr) return nullptr;
    web->frame = static_cast<uint8_t*>(std::calloc(bytes, 1));
    if (log != 0) setenv(kLogProperty, "1", 1);
    void* handle =
        web->frame != nullptr ? MoloFinDetect_Initialize(nullptr, width, height, nullptr) : nullptr;
    if (log != 0) unsetenv(kLogProperty);
    if (handle == nullptr) {
        std::free(web->frame);
        std::free(web);
        return nullptr;
    }
    web->detector = static_cast<Molo_FingerDetect*>(handle);
    web->width = width;
    web->height = height;
    web->stride = stride;
    return web;
}

MOLO_WEB_API uint8_t* molo_web_frame(MoloWeb* web) { return web->frame; }
MOLO_WEB_API int molo_web_stride(const MoloWeb* web) { return web->stride; }

MOLO_WEB_API int molo_web_analyse(MoloWeb* web, int orientation, int v_first, float gain,
                                  int color_temp) {
    uint8_t* luma = web->frame;
    uint8_t* chroma = luma + static_cast<size_t>(web->stride) * web->height;
    int row = 0, col = 0;
    const int result = MoloFinDetect_Execute(web->detector, luma, chroma, orientation, web->stride,
                                             v_first != 0 ? 1 : 0, gain, color_temp, &row, &col);
    if (result == 1) {
        web->state = MOLO_WEB_REPORTED;
        web->row = row;
        web->col = col;
    } else {
        web->state = web->detector->have_detect > 0 ? MOLO_WEB_HELD : MOLO_WEB_SEARCHING;
    }
    return result;
}

MOLO_WEB_API int molo_web_state(const MoloWeb* web) { return web->state; }
MOLO_WEB_API int molo_web_row(const MoloWeb* web) { return web->row; }
MOLO_WEB_API int molo_web_col(const MoloWeb* web) { return web->col; }

MOLO_WEB_API int molo_web_working_width(const MoloWeb* web) { return web->detector->down_width; }
MOLO_WEB_API int molo_web_working_height(const MoloWeb* web) { return web->detector->down_height; }
MOLO_WEB_API const uint8_t* molo_web_finger_mask(const MoloWeb* web) {
    return web->detector->finger_mask;
}

MOLO_WEB_API void molo_web_release(MoloWeb* web) {
    if (web == nullptr) return;
    MoloFinDetect_Finalize(web->detector, nullptr, 0);
    std::free(web->frame);
    std::free(web);
}

}  // extern "C"
