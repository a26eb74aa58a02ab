#include "prep/parallel_rows.h"

#include <atomic>
#include <cstdlib>

#include "prep/row_helpers.h"

#if MOLO_ROW_HELPERS
#include <thread>
#endif

namespace molo {
namespace {

std::atomic<int> g_override{0};
std::atomic<std::int64_t> g_work_threshold{kMinParallelWork};

int default_contexts() {
    static const int contexts = [] {
        const char* env = std::getenv("MOLO_THREADS");
        if (env != nullptr) {
            const int n = std::atoi(env);
            if (n > 0) return n;
        }
#if MOLO_ROW_HELPERS
        const unsigned hw = std::thread::hardware_concurrency();
        return hw > 0 ? static_cast<int>(hw) : 1;
#else
        return 1;
#endif
    }();
    return contexts;
}

void run_rows(int first, int last, const RowBody& body) {
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
    // Every row is run once whoever claims its chunk, so the rows come out
    // the same on any number of threads; when no helper can be had, the
    // caller runs them all in order.
    if (contexts > 1 && split.chunk_count > 1 && run_with_helpers(n, split, contexts - 1, body)) {
        return;
    }
    run_rows(0, n, body);
}

std::int64_t parallel_work_threshold() { return g_work_threshold.load(std::memory_order_relaxed); }

void set_parallel_work_threshold(std::int64_t steps) {
    g_work_threshold.store(steps >= 0 ? steps : kMinParallelWork, std::memory_order_relaxed);
}

void parallel_rows(int n, RowBody body, std::int64_t row_work) {
    if (n > 0 && static_cast<std::int64_t>(n) * row_work < parallel_work_threshold()) {
        run_rows(0, n, body);
        return;
    }
    parallel_rows(n, body);
}

}  // namespace molo
