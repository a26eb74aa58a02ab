// Parallel row loops: a pass over output rows [0, n) whose body is a function
// of one row index. Rows are handed out in contiguous chunks of equal size,
// about four claims per execution context; the caller takes part and returns
// only when every row is done. Bodies must write only their own output rows.
#ifndef MOLO_PREP_PARALLEL_ROWS_H
#define MOLO_PREP_PARALLEL_ROWS_H

#include <utility>

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
    static void invoke(void* object, int row) { (*static_cast<F*>(object))(row); }
    void* object_;
    void (*call_)(void*, int);
};

// Calls body(i) exactly once for every i in [0, n). With one execution context
// the rows run in increasing order on the calling thread.
void parallel_rows(int n, RowBody body);

}  // namespace molo

#endif  // MOLO_PREP_PARALLEL_ROWS_H
