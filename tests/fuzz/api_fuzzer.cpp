// Drives the C interface the way a camera client could, with anything the
// interface accepts: preview sizes from negative through tiny to odd, strides
// below and above the width, every orientation and chroma order, NaN and
// infinite gains, any colour temperature, and sequences of frames that are
// either raw fuzz bytes or textured scenes with a finger-toned region, so the
// tracking path is reached too. The planes are allocated to their exact
// extent, so any read past them is caught.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "MoloFingerDetect.h"
#include "common/synthetic_frame.h"
#include "support/log.h"

namespace {

float pick_gain(FuzzedDataProvider& in) {
    switch (in.ConsumeIntegralInRange<int>(0, 5)) {
        case 0: return std::numeric_limits<float>::quiet_NaN();
        case 1: return std::numeric_limits<float>::infinity();
        case 2: return -std::numeric_limits<float>::infinity();
        case 3: return in.ConsumeFloatingPoint<float>();
        default: return in.ConsumeFloatingPointInRange<float>(0.0f, 20.0f);
    }
}

// Fills the exact-size planes either with fuzz bytes or with a scene.
void fill_frame(FuzzedDataProvider& in, int width, int height, int stride, std::vector<uint8_t>& y,
                std::vector<uint8_t>& vu) {
    if (in.ConsumeBool() || width < 2 || height < 2) {
        const std::vector<uint8_t> bytes = in.ConsumeBytes<uint8_t>(64);
        for (size_t i = 0; i < y.size(); ++i) y[i] = bytes.empty() ? 0 : bytes[i % bytes.size()];
        for (size_t i = 0; i < vu.size(); ++i)
            vu[i] = bytes.empty() ? 128 : bytes[(i * 7) % bytes.size()];
        return;
    }
    Nv21Frame scene(width, height, in.ConsumeIntegral<uint8_t>(), 128, 128, stride);
    const int radius = in.ConsumeIntegralInRange<int>(0, 40);
    const uint8_t first = in.ConsumeIntegralInRange<uint8_t>(125, 170);
    const uint8_t second = in.ConsumeIntegralInRange<uint8_t>(95, 135);
    if (height >= 16 && width >= 16)
        scene.paint_half_disc(in.ConsumeIntegralInRange<int>(0, 1), radius, first, second);
    std::memcpy(y.data(), scene.y.data(), y.size());
    std::memcpy(vu.data(), scene.vu.data(), std::min(vu.size(), scene.vu.size()));
}

}  // namespace

// Diagnostics on, so every message is formatted, but dropped rather than
// printed: the fuzzer's output stays readable and fast.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("Molo_FingerDetection_enable_log", "1", 1);
    molo::set_log_hook([](void*, int, const char*) {}, nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    const bool large = in.ConsumeBool();
    const int width =
        large ? in.ConsumeIntegralInRange<int>(-64, 1100) : in.ConsumeIntegralInRange<int>(-8, 64);
    const int height =
        large ? in.ConsumeIntegralInRange<int>(-64, 800) : in.ConsumeIntegralInRange<int>(-8, 64);

    void* handle = MoloFinDetect_Initialize(nullptr, width, height, nullptr);
    if (handle == nullptr) return 0;

    // Negative sizes count as a zero-size preview.
    const int w = width > 0 ? width : 0;
    const int h = height > 0 ? height : 0;
    const int stride = w + in.ConsumeIntegralInRange<int>(-3, 40);
    const bool stride_ok = stride >= w;
    // Exact extents: the last row of each plane ends at the width.
    const size_t y_bytes = stride_ok && h > 0 ? static_cast<size_t>(stride) * (h - 1) + w : 1;
    const size_t vu_bytes =
        stride_ok && h / 2 > 0 ? static_cast<size_t>(stride) * (h / 2 - 1) + w : 1;
    std::vector<uint8_t> y(y_bytes ? y_bytes : 1);
    std::vector<uint8_t> vu(vu_bytes ? vu_bytes : 1);

    const int frames = in.ConsumeIntegralInRange<int>(1, 8);
    for (int f = 0; f < frames && in.remaining_bytes() > 0; ++f) {
        if (stride_ok) fill_frame(in, w, h, stride, y, vu);
        const int orientation = in.ConsumeIntegralInRange<int>(-1, 2);
        const int ds_mode = in.ConsumeIntegralInRange<int>(0, 2);
        const float gain = pick_gain(in);
        const int cct = in.ConsumeIntegral<int>();
        int row = -7;
        int col = -7;
        const int result = MoloFinDetect_Execute(handle, y.data(), vu.data(), orientation, stride,
                                                 ds_mode, gain, cct, &row, &col);
        if (result != 0 && result != 1 && result != MOLO_FD_BAD_STRIDE) __builtin_trap();
        if (result == 1 && (row < 0 || col < 0 || row > h || col > w)) __builtin_trap();
    }
    MoloFinDetect_Verification(handle, y.data(), vu.data(), 0, 0, 0, 0);
    MoloFinDetect_Finalize(handle, nullptr, in.ConsumeIntegralInRange<int>(0, 1));
    return 0;
}
