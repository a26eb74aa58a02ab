// Per-frame cost of the detector at three preview sizes, next to the cost of
// copying the same frame bytes with memcpy: no pass over the frame can beat
// that copy by much, so the ratio to it compares across machines. bench/run.sh
// runs every case with repetitions and prints medians and ratios; the thread
// count comes from MOLO_THREADS.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "MoloFingerDetect.h"
#include "bench_scenes.h"

namespace {

int width_of(const benchmark::State& state) { return static_cast<int>(state.range(0)); }
int height_of(const benchmark::State& state) { return static_cast<int>(state.range(1)); }

// Sensor gain 1.0 at 5000 K is the light class that excludes none of the
// five colour entries, so a searching frame is tried against all of them.
constexpr float kGain = 1.0f;
constexpr int kKelvin = 5000;

class Handle {
public:
    Handle(int width, int height) : fd_(MoloFinDetect_Initialize(nullptr, width, height, nullptr)) {}
    ~Handle() { MoloFinDetect_Finalize(fd_, nullptr, 0); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    int run(bench::CameraFrame& f) {
        return MoloFinDetect_Execute(fd_, f.y_plane(), f.vu_plane(), 0, f.stride, 1, kGain, kKelvin,
                                     &row_, &col_);
    }
    const Molo_FingerDetect& detector() const { return *static_cast<Molo_FingerDetect*>(fd_); }

private:
    void* fd_;
    int row_ = 0;
    int col_ = 0;
};

// The floor: one memcpy of the frame's luma and chroma bytes.
void BM_Memcpy(benchmark::State& state) {
    const size_t bytes = static_cast<size_t>(width_of(state)) * height_of(state) * 3 / 2;
    bench::PageAligned from(bytes);
    bench::PageAligned to(bytes);
    std::memset(from.data(), 7, bytes);
    std::memset(to.data(), 0, bytes);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes));
}

void BM_DownSampling(benchmark::State& state) {
    bench::CameraFrame frame(bench::natural_scene(width_of(state), height_of(state)));
    Molo_FingerDetect d;
    d.Initialize(frame.width, frame.height, nullptr);
    d.src_y = frame.y_plane();
    d.src_vu = frame.vu_plane();
    for (auto _ : state) {
        d.DownSampling(frame.stride, 1);
        benchmark::ClobberMemory();
    }
    d.Finalize(nullptr, 0);
}

// Searching: a finger-free frame is downsampled once and tried against every
// colour entry; the warm patch and flecks of the scene grow a few regions.
void BM_Execute_WarmUp(benchmark::State& state) {
    bench::CameraFrame frame(bench::natural_scene(width_of(state), height_of(state)));
    Handle fd(frame.width, frame.height);
    for (auto _ : state) {
        benchmark::DoNotOptimize(fd.run(frame));
        if (fd.detector().have_detect != 0) {
            state.SkipWithError("the finger-free scene was taken for a finger");
            break;
        }
    }
}

// Tracking: a finger held at the left edge, its size changing slightly from
// frame to frame; every frame runs once with the frozen entry, passes every
// test and is reported.
void BM_Execute_Tracking(benchmark::State& state) {
    const int width = width_of(state);
    const int height = height_of(state);
    const int radius = height / 8 / 4;
    std::vector<bench::CameraFrame> clip;
    for (int grow : {0, 1, 2, 1}) clip.emplace_back(bench::finger_scene(width, height, radius + grow));
    Handle fd(width, height);
    fd.run(clip[0]);
    if (fd.run(clip[1]) != 1) state.SkipWithError("the held finger is not reported");
    size_t next = 2;
    int missed = 0;
    for (auto _ : state) {
        missed += fd.run(clip[next]) != 1;
        next = (next + 1) % clip.size();
    }
    if (missed != 0) state.SkipWithError("a frame of the held finger was not reported");
}

// The worst case: every searching frame grows 253 one-cell regions for each
// of the three warm colour entries, and every growth clears the whole queue.
void BM_Execute_WorstCase(benchmark::State& state) {
    bench::CameraFrame frame(bench::speck_scene(width_of(state), height_of(state)));
    {
        // Entry 0 alone, to confirm that the frame grows the last label
        // (254) and is not turned away for growing more.
        Molo_FingerDetect d;
        d.Initialize(frame.width, frame.height, nullptr);
        d.execute(frame.y_plane(), frame.vu_plane(), 0, true, frame.stride, 1, kGain, kKelvin,
                  nullptr, nullptr);
        unsigned int last = 0;
        for (int i = 0; i < d.down_width * d.down_height; ++i) last = std::max(last, d.label_map[i]);
        d.Finalize(nullptr, 0);
        if (last != 254) {
            state.SkipWithError("the speck frame does not grow exactly 253 regions");
            return;
        }
    }
    Handle fd(frame.width, frame.height);
    for (auto _ : state) benchmark::DoNotOptimize(fd.run(frame));
}

void sizes(benchmark::internal::Benchmark* b) {
    b->Args({640, 480})->Args({1280, 720})->Args({1920, 1080});
    b->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK(BM_Memcpy)->Apply(sizes);
BENCHMARK(BM_DownSampling)->Apply(sizes);
BENCHMARK(BM_Execute_WarmUp)->Apply(sizes);
BENCHMARK(BM_Execute_Tracking)->Apply(sizes);
BENCHMARK(BM_Execute_WorstCase)->Apply(sizes);

}  // namespace
