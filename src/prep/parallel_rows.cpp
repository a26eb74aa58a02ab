#include "prep/parallel_rows.h"

#include <atomic>
#include <cstdlib>
#include <thread>

#ifdef _OPENMP
#include <omp.h>
#endif

namespace molo {
namespace {

std::atomic<int> g_override{0};

int default_contexts() {
    static const int contexts = [] {
        const char* env = std::getenv("MOLO_THREADS");
        if (env != nullptr) {
            const int n = std::atoi(env);
            if (n > 0) return n;
        }
        const unsigned hw = std::thread::hardware_concurrency();
        return hw > 0 ? static_cast<int>(hw) : 1;
    }();
    return contexts;
}

void run_chunks(int first, int last, const RowBody& body) {
    for (int row = first; row < last; ++row) body(row);
}

}  // namespace

RowChunking row_chunking(int n, int contexts) {
    if (n <= 0) return {0, 0};
    if (contexts < 1) contexts = 1;
    int chunk = n / (4 * contexts);
    if (chunk < 2) chunk = 1;
    int chunk_count = n / chunk;
    if (n % chunk != 0) ++chunk_count;
    return {chunk, chunk_count};
}

int execution_contexts() {
    const int forced = g_override.load(std::memory_order_relaxed);
    return forced > 0 ? forced : default_contexts();
}

void set_execution_contexts(int contexts) {
    g_override.store(contexts > 0 ? contexts : 0, std::memory_order_relaxed);
}

void parallel_rows(int n, RowBody body) {
    if (n <= 0) return;
    const int contexts = execution_contexts();
    const RowChunking split = row_chunking(n, contexts);
    if (contexts == 1 || split.chunk_count == 1) {
        run_chunks(0, n, body);
        return;
    }
#ifdef _OPENMP
    // The runtime provides the team; the rows are handed out by one shared
    // claim counter, so claims go in order to whichever thread is free, every
    // chunk is taken exactly once, and no worksharing state is allocated per
    // loop. The team always has the same size so the runtime can keep it.
    std::atomic<int> next_claim{0};
#pragma omp parallel num_threads(contexts)
    {
        for (;;) {
            const int claim = next_claim.fetch_add(1, std::memory_order_relaxed);
            if (claim >= split.chunk_count) break;
            const int begin = claim * split.chunk;
            const int end = begin + (split.chunk < n - begin ? split.chunk : n - begin);
            run_chunks(begin, end, body);
        }
    }
#else
    run_chunks(0, n, body);
#endif
}

}  // namespace molo
