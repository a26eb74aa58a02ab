// Steady-state frames allocate nothing: every allocation of the process is
// counted while frames run, serially and in parallel, through searching,
// tracking and reporting. Built without sanitizers only, since this program
// replaces the C allocator's entry points to count them.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>

#include "MoloFingerDetect.h"
#include "common/synthetic_frame.h"
#include "prep/parallel_rows.h"

extern "C" void* __libc_malloc(size_t);
extern "C" void* __libc_calloc(size_t, size_t);
extern "C" void* __libc_realloc(void*, size_t);
extern "C" void* __libc_memalign(size_t, size_t);
extern "C" void __libc_free(void*);

namespace {
std::atomic<long> g_allocations{0};
std::atomic<bool> g_counting{false};
void count() {
    if (g_counting.load(std::memory_order_relaxed)) g_allocations.fetch_add(1);
}
}  // namespace

extern "C" void* malloc(size_t n) {
    count();
    return __libc_malloc(n);
}
extern "C" void* calloc(size_t n, size_t size) {
    count();
    return __libc_calloc(n, size);
}
extern "C" void* realloc(void* p, size_t n) {
    count();
    return __libc_realloc(p, n);
}
extern "C" void* memalign(size_t alignment, size_t n) {
    count();
    return __libc_memalign(alignment, n);
}
extern "C" void free(void* p) { __libc_free(p); }

TEST(NoAllocationPerFrame, SearchingTrackingAndReporting) {
    // A finger-toned half disc on the left edge of a 1080p scene, then an
    // empty scene, so frames run through every path.
    Nv21Frame finger(1920, 1080, 120, 100, 160);
    finger.paint_half_disc(0, 30);
    Nv21Frame empty(1920, 1080, 120, 100, 160);
    setenv("Molo_FingerDetection_enable_log", "1", 1);
    for (int contexts : {1, 4}) {
        molo::set_execution_contexts(contexts);
        void* fd = MoloFinDetect_Initialize(nullptr, 1920, 1080, nullptr);
        int row = 0, col = 0, reported = 0;
        auto frame = [&](Nv21Frame& f) {
            reported += MoloFinDetect_Execute(fd, f.y_plane(), f.vu_plane(), 0, 1920, 1, 2.0f,
                                              5000, &row, &col) == 1;
        };
        frame(empty);  // warms the worker pool and the log stream
        frame(finger);
        frame(finger);
        g_allocations = 0;
        g_counting = true;
        for (int i = 0; i < 10; ++i) frame(i % 5 == 4 ? empty : finger);
        g_counting = false;
        EXPECT_EQ(g_allocations.load(), 0) << contexts << " contexts";
        EXPECT_GT(reported, 5);
        MoloFinDetect_Finalize(fd, nullptr, 0);
    }
    unsetenv("Molo_FingerDetection_enable_log");
    molo::set_execution_contexts(0);
}
