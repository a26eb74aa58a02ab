// Parallel row loops: a pass over output rows [0, n) whose body is a function
// of one row index. Rows are handed out in contiguous chunks of equal size,
// about four claims per execution context; the caller takes part, runs every
// chunk that no helper thread has taken, and returns only when every row is
// done (row_helpers.h). Bodies must write only their own output rows.
#ifndef MOLO_PREP_PARALLEL_ROWS_H
#define MOLO_PREP_PARALLEL_ROWS_H

#include <cstdint>

namespace molo {

struct RowChunking {
    int chunk;        // rows per claim
    int chunk_count;  // claims that cover [0, n)
};

// chunk = n / (4 p), at least 1; chunk_count = ceil(n / chunk). For n <= 0 both are 0.
RowChunking row_chunking(int n, int contexts);

// Execution contexts (the caller plus workers) used by every row loop of the
// process: MOLO_THREADS when set to a positive number, else the hardware's.
int execution_contexts();
// Overrides the count for the process (tests run passes serially and in
// parallel); a value below 1 restores the default.
void set_execution_contexts(int contexts);

// A non-owning reference to a row body; no allocation per loop.
class RowBody {
public:
    template <typename F>
    RowBody(F& f) : object_(&f), call_(&invoke<F>) {}  // NOLINT: implicit by design
    void operator()(int row) const { call_(object_, row); }

private:
    template <typename F>
    static void invoke(void* object, int row) {
        (*static_cast<F*>(object))(row);
    }
    void* object_;
    void (*call_)(void*, int);
};

// Calls body(i) exactly once for every i in [0, n). With one execution context
// the rows run in increasing order on the calling thread.
void parallel_rows(int n, RowBody body);

// The same, for a loop whose rows cost about `row_work` steps each (a step
// is a source byte read or an operator tap). A loop of fewer steps in all
// than parallel_work_threshold() runs on the caller alone: a woken helper
// would arrive when the loop is nearly over, and waking it costs the caller
// more than the helper would take off it.
void parallel_rows(int n, RowBody body, std::int64_t row_work);

// kMinParallelWork steps is about 100 microseconds of one core (downsampling
// reads about 10 source bytes a nanosecond on the x86-64 build machine).
constexpr std::int64_t kMinParallelWork = 1 << 20;
std::int64_t parallel_work_threshold();
// Tests that compare serial and parallel passes on small grids set 0; a
// negative value restores kMinParallelWork.
void set_parallel_work_threshold(std::int64_t steps);

}  // namespace molo

#endif  // MOLO_PREP_PARALLEL_ROWS_H
