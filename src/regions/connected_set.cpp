// Region growing: the 4-connected set of cells that carry exactly the seed's
// byte and have no label yet, grown breadth-first over the detector's queue.
#include <cstddef>

#include "molo/detector.h"

// `tolerance` is part of the interface but membership is exact byte equality;
// it is not turned into a similarity threshold. Planes are addressed with the
// detector's column count as stride; `width` and `height` bound the neighbour
// tests only. `label` must be non-zero: labelling a cell as it is queued is
// what keeps any cell from being queued twice and the queue within one record
// per grid cell.
void Molo_FingerDetect::ConnectedSet(Pixel seed, double /*tolerance*/, unsigned char* values,
                                     int width, int height, int label, unsigned int* labels,
                                     int* count) {
    const int stride = down_width;
    const unsigned int mark = static_cast<unsigned int>(label);

    // The whole queue is cleared on every call, whatever the region's size.
    const size_t slots = static_cast<size_t>(down_width) * static_cast<size_t>(down_height);
    for (size_t i = 0; i < slots; ++i) region_queue[i] = Pixel{0, 0};

    // The seed is labelled whatever it carried before.
    region_queue[0] = Pixel{seed.row, seed.col};
    labels[seed.row * stride + seed.col] = mark;

    int read = 0;
    int write = 0;
    int taken = 0;
    int pending = 1;

    // Queues (r, c) when it carries `v` and is still unlabelled.
    auto join = [&](int r, int c, unsigned char v) {
        const int i = r * stride + c;
        if (values[i] != v || labels[i] != 0) return;
        ++write;
        region_queue[write] = Pixel{r, c};
        labels[i] = mark;
        ++pending;
    };

    for (;;) {
        const Pixel p = region_queue[read];
        ++taken;
        --pending;
        const int r = p.row;
        const int c = p.col;
        const unsigned char v = values[r * stride + c];
        if (r > 0) join(r - 1, c, v);
        if (r < height - 1) join(r + 1, c, v);
        if (c > 0) join(r, c - 1, v);
        if (c < width - 1) join(r, c + 1, v);
        if (pending == 0) break;
        ++read;
    }
    *count = taken;
}
