// Per-frame cost of the detector on preview-sized frames. The budget on a
// phone's small core is a few milliseconds per frame at 1920 x 1080; run with
// MOLO_THREADS=1 for the single-core figure.
#include <benchmark/benchmark.h>

#include "MoloFingerDetect.h"
#include "common/synthetic_frame.h"

namespace {

// A finger-toned half disc entering from the left edge over a neutral scene.
Nv21Frame finger_frame(int width, int height) {
    Nv21Frame f(width, height, 120, 100, 160);
    f.paint_half_disc(0, height / 8 / 4);
    return f;
}

void BM_ExecuteFrame(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    const int height = static_cast<int>(state.range(1));
    Nv21Frame frame = finger_frame(width, height);
    void* fd = MoloFinDetect_Initialize(nullptr, width, height, nullptr);
    int row = 0, col = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(MoloFinDetect_Execute(fd, frame.y_plane(), frame.vu_plane(), 0,
                                                       width, 1, 2.0f, 5000, &row, &col));
    }
    MoloFinDetect_Finalize(fd, nullptr, 0);
}
BENCHMARK(BM_ExecuteFrame)->Args({640, 480})->Args({1920, 1080})->Unit(benchmark::kMicrosecond);

void BM_DownSampling(benchmark::State& state) {
    Nv21Frame frame = finger_frame(1920, 1080);
    Molo_FingerDetect d;
    d.Initialize(1920, 1080, nullptr);
    d.src_y = frame.y_plane();
    d.src_vu = frame.vu_plane();
    for (auto _ : state) {
        d.DownSampling(1920, 1);
        benchmark::DoNotOptimize(d.down_y[0]);
    }
    d.Finalize(nullptr, 0);
}
BENCHMARK(BM_DownSampling)->Unit(benchmark::kMicrosecond);

}  // namespace
