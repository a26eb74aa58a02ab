// Soak run: many frames through one handle, cycling through searching (no
// finger), held (first passing frame) and reported (confirmed finger). Every
// cycle must give the results of the first, and the heap and the resident set
// must not grow between the end of the first cycles and the end of the run.
//   molo_soak [FRAMES]   (default 100000, 640 x 480)
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "MoloFingerDetect.h"
#include "common/synthetic_frame.h"

namespace {

// Resident pages that are not backed by a file (heap, stacks, buffers): code
// pages met for the first time late in the run do not count. Read with plain
// system calls, since stdio would allocate its buffer on the heap being watched.
long resident_pages() {
    const int fd = open("/proc/self/statm", O_RDONLY);
    if (fd < 0) return -1;
    char text[128] = {};
    const ssize_t n = read(fd, text, sizeof text - 1);
    close(fd);
    long size = 0, resident = 0, shared = 0;
    if (n <= 0 || std::sscanf(text, "%ld %ld %ld", &size, &resident, &shared) != 3) return -1;
    return resident - shared;
}

size_t heap_in_use() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

}  // namespace

int main(int argc, char** argv) {
    const long frames = argc > 1 ? std::atol(argv[1]) : 100000;
    constexpr int kWidth = 640, kHeight = 480;

    Nv21Frame empty(kWidth, kHeight, 120, 100, 160);
    Nv21Frame finger(kWidth, kHeight, 120, 100, 160);
    finger.paint_half_disc(0, 14);
    // Two searching frames, then the finger: held on its first frame,
    // reported from its second, dropped when it leaves.
    std::vector<Nv21Frame*> cycle{&empty, &empty, &finger, &finger, &finger, &finger};

    void* fd = MoloFinDetect_Initialize(nullptr, kWidth, kHeight, nullptr);
    if (fd == nullptr) {
        std::fprintf(stderr, "soak: no handle\n");
        return 1;
    }
    std::vector<int> first_cycle, first_rows, first_cols;
    size_t heap_after_warmup = 0;
    long rss_after_warmup = 0;
    long mismatches = 0, reports = 0;
    const long warmup_frames = 100 * static_cast<long>(cycle.size());
    for (long n = 0; n < frames; ++n) {
        const size_t k = static_cast<size_t>(n % static_cast<long>(cycle.size()));
        Nv21Frame& f = *cycle[k];
        int row = 0, col = 0;
        const int result = MoloFinDetect_Execute(fd, f.y_plane(), f.vu_plane(), 0, kWidth, 1, 2.0f,
                                                 5000, &row, &col);
        reports += result == 1;
        if (n < static_cast<long>(cycle.size())) {
            first_cycle.push_back(result);
            first_rows.push_back(row);
            first_cols.push_back(col);
        } else if (result != first_cycle[k] ||
                   (result == 1 && (row != first_rows[k] || col != first_cols[k]))) {
            if (mismatches++ < 5) {
                std::fprintf(stderr, "soak: frame %ld gave %d at (%d, %d), first cycle %d\n", n,
                             result, row, col, first_cycle[k]);
            }
        }
        if (n + 1 == warmup_frames) {
            heap_after_warmup = heap_in_use();
            rss_after_warmup = resident_pages();
        }
    }
    const size_t heap_end = heap_in_use();
    const long rss_end = resident_pages();
    MoloFinDetect_Finalize(fd, nullptr, 0);

    std::printf(
        "soak: %ld frames, %ld reports, %ld mismatches; heap %zu -> %zu bytes, "
        "resident %ld -> %ld pages\n",
        frames, reports, mismatches, heap_after_warmup, heap_end, rss_after_warmup, rss_end);
    std::printf("soak: first cycle");
    for (int result : first_cycle) std::printf(" %d", result);
    std::printf("\n");
    bool ok = mismatches == 0 && heap_end == heap_after_warmup && rss_end <= rss_after_warmup;
    // The cycle must exercise every state: nothing reported while searching
    // and on the held frame, a report once the finger is confirmed.
    ok = ok && first_cycle.size() == cycle.size() && first_cycle[0] == 0 && first_cycle[2] == 0 &&
         first_cycle[3] == 1 && first_cycle[5] == 1;
    if (!ok) std::fprintf(stderr, "soak: FAILED\n");
    return ok ? 0 : 1;
}
