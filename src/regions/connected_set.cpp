// Region growing: the 4-connected set of cells that carry exactly the seed's
// byte and have no label yet, grown breadth-first over the detector's queue.
#include <cstddef>
#include <cstring>

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
    // Local copies: the label stores could otherwise alias the queue and the
    // detector's fields, and force them to be read again after every store.
    Pixel* const queue = region_queue;

    // The whole queue is cleared on every call, whatever the region's size.
    const size_t slots = static_cast<size_t>(down_width) * static_cast<size_t>(down_height);
    std::memset(static_cast<void*>(queue), 0, slots * sizeof(Pixel));

    // The seed is labelled whatever it carried before.
    queue[0] = Pixel{seed.row, seed.col};
    labels[seed.row * stride + seed.col] = mark;

    int read = 0;
    int write = 0;

    // Queues (r, c) when it carries `v` and is still unlabelled. Every cell
    // queued is also counted as pending, so the flood ends when the read
    // position passes the write position.
    auto join = [queue, values, labels, stride, mark, &write](int r, int c, unsigned char v) {
        const int i = r * stride + c;
        if (values[i] != v || labels[i] != 0) return;
        ++write;
        queue[write] = Pixel{r, c};
        labels[i] = mark;
    };

    for (;;) {
        const Pixel p = queue[read];
        const int r = p.row;
        const int c = p.col;
        const unsigned char v = values[r * stride + c];
        if (r > 0) join(r - 1, c, v);
        if (r < height - 1) join(r + 1, c, v);
        if (c > 0) join(r, c - 1, v);
        if (c < width - 1) join(r, c + 1, v);
        if (read == write) break;
        ++read;
    }
    // Every record up to the write position was taken once.
    *count = read + 1;
}
