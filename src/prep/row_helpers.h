// Helper threads of the row loops: a pool of threads, started once per
// process when a loop first asks for them, that take chunks of the current
// loop alongside its caller.
//
// What the caller may rely on:
// - Chunks are claimed one at a time from a word that holds the loop's
//   generation, its chunk count and its next chunk. The caller claims every chunk
//   that no helper has taken, so a loop finishes even if no helper ever runs;
//   the caller then waits only for chunks that a helper already holds.
// - A helper touches the body (and so the caller's frame) only while it
//   holds a chunk of the current generation. A helper that wakes after its
//   loop has ended finds the generation changed or no chunk left, and
//   touches nothing but the pool's own memory, which lives for the process.
// - Waiting threads spin for a few tens of microseconds at most, then sleep.
// - A caller that waited for a held chunk longer than its own share of the
//   loop took (a helper the system took off its core) leaves the following
//   loops to their callers for a quarter of a second, and for longer while
//   such stalls keep coming back.
// - One loop at a time uses the pool; a loop that finds it in use (another
//   thread's loop, or a loop started from inside a body) gets no helpers.
#ifndef MOLO_PREP_ROW_HELPERS_H
#define MOLO_PREP_ROW_HELPERS_H

#include "prep/parallel_rows.h"

// Builds for a WebAssembly target without threads, or configured with
// MOLO_PARALLEL_ROWS=OFF, have no pool: every loop runs on its caller.
#if defined(MOLO_SERIAL_ROWS) || (defined(__EMSCRIPTEN__) && !defined(__EMSCRIPTEN_PTHREADS__))
#define MOLO_ROW_HELPERS 0
#else
#define MOLO_ROW_HELPERS 1
#endif

namespace molo {

// Runs chunks [0, split.chunk_count) of rows [0, n) on the caller with up to
// `helpers` pool threads. Returns false, having called nothing, when there
// is no pool, it is in use, or no helper thread could be started.
bool run_with_helpers(int n, RowChunking split, int helpers, RowBody body);

// Test hooks: they stop helpers at a fixed point so tests can play the late
// and the absent helper without depending on the scheduler.
namespace row_helpers_testing {
// While held, a helper that notices a new loop stops before its first claim
// and waits there until released.
void hold(bool held);
// Helpers waiting at the hold point.
int held_count();
// Helpers between the hold point and the end of their claims.
int claiming_count();
// Helper threads running in the process.
int started_count();
// Whether loops are left to their callers after a stall, and the end of that.
bool backing_off();
void end_backoff();
}  // namespace row_helpers_testing

}  // namespace molo

#endif  // MOLO_PREP_ROW_HELPERS_H
