// Steady-state frames allocate nothing: every allocation of the process is
// counted while frames run, serially and in parallel, through searching
// (every colour entry tried), tracking and reporting. Built without
// sanitizers only, since this program replaces the C allocator's entry points,
// which the C++ runtime's operator new calls too, to count them.
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
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
extern "C" void* aligned_alloc(size_t alignment, size_t n) {
    count();
    return __libc_memalign(alignment, n);
}
extern "C" int posix_memalign(void** out, size_t alignment, size_t n) {
    count();
    *out = __libc_memalign(alignment, n);
    return *out != nullptr || n == 0 ? 0 : ENOMEM;
}
extern "C" void free(void* p) { __libc_free(p); }
// The C++ runtime's operator new and delete, plain and aligned, come here.

namespace {
void* volatile g_escape;
}

// Plain, array and over-aligned new, and malloc: each is counted once.
TEST(NoAllocationPerFrame, TheCounterSeesEveryKindOfAllocation) {
    struct alignas(64) Line {
        char bytes[64];
    };
    g_allocations = 0;
    g_counting = true;
    delete static_cast<int*>(g_escape = new int(1));
    delete[] static_cast<char*>(g_escape = new char[100]);
    delete static_cast<Line*>(g_escape = new Line);
    std::free(g_escape = std::malloc(10));
    g_counting = false;
    EXPECT_EQ(g_allocations.load(), 4);
}

TEST(NoAllocationPerFrame, SearchingTrackingAndReporting) {
    // A finger-toned half disc on the left edge of a 1080p scene, and an
    // empty scene, so frames run through every path. Gain 1.0 at 5000 K
    // excludes no colour entry: a searching frame tries all five.
    Nv21Frame finger(1920, 1080, 120, 100, 160);
    finger.paint_half_disc(0, 30);
    Nv21Frame empty(1920, 1080, 120, 100, 160);
    setenv("Molo_FingerDetection_enable_log", "1", 1);
    for (int contexts : {1, 4}) {
        molo::set_execution_contexts(contexts);
        void* fd = MoloFinDetect_Initialize(nullptr, 1920, 1080, nullptr);
        auto* detector = static_cast<Molo_FingerDetect*>(fd);
        int row = 0, col = 0, reported = 0, searched = 0;
        auto frame = [&](Nv21Frame& f) {
            searched += detector->have_detect == 0;
            reported += MoloFinDetect_Execute(fd, f.y_plane(), f.vu_plane(), 0, 1920, 1, 1.0f, 5000,
                                              &row, &col) == 1;
        };
        frame(empty);  // warms the worker pool and the log stream
        frame(finger);
        frame(finger);
        g_allocations = 0;
        searched = 0;
        reported = 0;
        g_counting = true;
        // Cycles of three empty frames (the first ends the previous hold, the
        // others search) and a finger held for five (found, then reported).
        for (int i = 0; i < 200; ++i) frame(i % 8 < 3 ? empty : finger);
        g_counting = false;
        EXPECT_EQ(g_allocations.load(), 0) << contexts << " contexts";
        EXPECT_GE(searched, 75);
        EXPECT_GE(reported, 75);
        MoloFinDetect_Finalize(fd, nullptr, 0);
    }
    unsetenv("Molo_FingerDetection_enable_log");
    molo::set_execution_contexts(0);
}
