#include "prep/row_helpers.h"

#if MOLO_ROW_HELPERS

#include <atomic>
#include <chrono>
#include <climits>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <system_error>
#include <thread>

#if defined(__linux__)
#include <linux/futex.h>
#include <pthread.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace molo {
namespace {

// More helpers than this are never started, whatever MOLO_THREADS asks for.
constexpr int kMaxHelpers = 31;

// How long a thread polls before it sleeps: a helper waiting for the next
// loop (the loops of one frame follow each other within microseconds), and a
// caller waiting for a chunk a helper holds. Polling longer would take the
// core from other work on a busy device.
constexpr std::chrono::microseconds kHelperPoll{20};
constexpr std::chrono::microseconds kCallerPoll{20};

// A caller that waits for a held chunk longer than it took for its own share
// of the loop (and longer than kStallFloor) has met a helper that the system
// took off its core: on a device whose cores are all busy, that helper runs
// again only after a time slice, and the frame waits with it. The pool then
// leaves the loops to their callers for a while, kFirstBackOff, doubling up to
// kFirstBackOff << kMaxBackOffLevel while stalls keep coming soon after the
// helpers return. Results do not change; only who computes the rows does.
using Clock = std::chrono::steady_clock;
constexpr std::chrono::microseconds kStallFloor{500};
constexpr std::chrono::milliseconds kFirstBackOff{250};
constexpr int kMaxBackOffLevel = 5;
constexpr std::chrono::seconds kStallsRepeatWithin{2};

inline void cpu_relax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__) || (defined(__arm__) && defined(__ARM_ARCH) && __ARM_ARCH >= 7)
    __asm__ __volatile__("yield");
#endif
}

// Polls `ready` for at most `limit`; true as soon as it holds.
template <typename Ready>
bool poll_for(Ready ready, std::chrono::microseconds limit) {
    const auto start = std::chrono::steady_clock::now();
    for (;;) {
        for (int i = 0; i < 64; ++i) {
            if (ready()) return true;
            cpu_relax();
        }
        if (std::chrono::steady_clock::now() - start >= limit) return ready();
    }
}

// Helpers are batch threads to the Linux scheduler: a woken helper then
// never preempts the thread that woke it. Otherwise, on a busy device, a
// helper that has slept (and so is ahead in the queue) is often woken in
// place of the caller on the caller's own core, and the caller, whose frame
// is waiting, goes to the back of the queue. Where the call is refused the
// helpers stay ordinary threads.
void lower_wakeup_priority() {
#if defined(__linux__)
    sched_param param{};
    param.sched_priority = 0;
    pthread_setschedparam(pthread_self(), SCHED_BATCH, &param);
#endif
}

// Sleeping on a word: park returns once the word differs from `expected`, or
// on a wake, or spuriously; callers check their condition again. Waking
// takes no lock that a sleeper could hold: a helper preempted at the wrong
// moment can never hold up the caller that wakes it. Systems without futexes
// use one mutex and condition variable, whose lock is held only around the
// check and the wait.
static_assert(sizeof(std::atomic<int>) == sizeof(int), "parking needs a plain int word");
#if defined(__linux__)
class Parking {
public:
    void park(std::atomic<int>& word, int expected) {
        syscall(SYS_futex, reinterpret_cast<int*>(&word), FUTEX_WAIT_PRIVATE, expected, nullptr,
                nullptr, 0);
    }
    void wake(std::atomic<int>& word) {
        syscall(SYS_futex, reinterpret_cast<int*>(&word), FUTEX_WAKE_PRIVATE, INT_MAX, nullptr,
                nullptr, 0);
    }
};
#else
class Parking {
public:
    void park(std::atomic<int>& word, int expected) {
        std::unique_lock<std::mutex> lock(mutex_);
        if (word.load() == expected) changed_.wait(lock);
    }
    void wake(std::atomic<int>&) {
        { std::lock_guard<std::mutex> lock(mutex_); }
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
};
#endif

// The claim word holds the loop's generation, its chunk count and its next
// chunk, so a claim is decided on one value: a compare-and-swap on the whole
// word takes a chunk only while it exists in the loop that is running. (A
// count kept beside the word could be the next loop's, written while the
// word still names a loop whose chunks are all gone.) A held chunk keeps its
// loop from ending, so what a helper reads of the loop after its claim is
// that loop's. Generations wrap after about a million loops; a helper would
// have to stall over all of them and meet the same count and chunk for a
// stale claim to succeed.
constexpr int kChunkBits = 22;
constexpr uint64_t kChunkMask = (uint64_t{1} << kChunkBits) - 1;
constexpr uint32_t kGenerationMask = (uint32_t{1} << (64 - 2 * kChunkBits)) - 1;
constexpr int kMaxChunks = static_cast<int>(kChunkMask);
constexpr uint64_t claim_word(uint32_t generation, int chunk_count) {
    return (uint64_t{generation} << (2 * kChunkBits)) |
           (static_cast<uint64_t>(chunk_count) << kChunkBits);
}
constexpr uint32_t generation_of(uint64_t word) {
    return static_cast<uint32_t>(word >> (2 * kChunkBits));
}
constexpr int chunk_count_of(uint64_t word) {
    return static_cast<int>((word >> kChunkBits) & kChunkMask);
}
constexpr int chunk_of(uint64_t word) { return static_cast<int>(word & kChunkMask); }

// A helper sleeps on its signal word, which changes each time it is woken.
struct alignas(64) HelperSlot {
    std::atomic<int> signal{0};
    std::atomic<bool> sleeping{false};
};

class Pool {
public:
    ~Pool();
    bool run(int n, RowChunking split, int helpers, const RowBody& body);

    void hold(bool held);
    int held_count() const { return held_.load(); }
    int claiming_count() const { return claiming_.load(); }
    int started_count() const { return started_.load(); }

private:
    void start_helpers(int wanted);
    void wake(int index);
    void helper_main(int index, uint32_t seen);
    template <typename Ready>
    void sleep_until(HelperSlot& slot, Ready ready);
    void wait_at_hold();
    int claim(uint32_t generation, int& chunk_count);
    void claim_chunks(uint32_t generation);
    void run_chunk(int chunk, int n, int rows_per_chunk, const RowBody& body);
    void chunk_done(int chunk_count);
    void note_wait(Clock::duration own_work, Clock::duration waited, Clock::time_point now);

public:
    // Test hooks (row_helpers_testing).
    bool backing_off() const { return Clock::now() < backoff_until_; }
    void end_backoff() {
        backoff_until_ = Clock::time_point{};
        backoff_level_ = 0;
    }

private:
    // Taken by the thread whose loop uses the pool; it alone starts helpers
    // and writes the loop's description below.
    std::atomic<bool> busy_{false};
    uint32_t generation_ = 0;
    std::atomic<int> started_{0};
    // The back-off after a stall (see kStallFloor); only the busy_ owner
    // reads or writes them.
    Clock::time_point backoff_until_{};
    int backoff_level_ = 0;
#if defined(__linux__)
    pid_t owner_ = getpid();  // the process whose threads these are
#endif

    // The current loop, written before its generation is published in
    // claim_ and left as it is until the next loop. A helper reads them only
    // once it holds a chunk, but for the helper count, which it reads before
    // any claim and which may then be a later loop's (harmless: it only
    // decides whether the helper tries to claim).
    std::atomic<int> rows_{0};
    std::atomic<int> rows_per_chunk_{0};
    std::atomic<int> helpers_wanted_{0};
    std::atomic<const RowBody*> body_{nullptr};

    alignas(64) std::atomic<uint64_t> claim_{0};
    alignas(64) std::atomic<int> done_{0};  // chunks finished in the current loop
    std::atomic<bool> caller_sleeping_{false};

    std::atomic<bool> stopping_{false};
    Parking parking_;

    std::atomic<bool> hold_{false};
    std::atomic<int> held_{0};
    std::atomic<int> claiming_{0};
    std::mutex hold_mutex_;
    std::condition_variable hold_release_;

    HelperSlot slots_[kMaxHelpers];
    std::thread threads_[kMaxHelpers];
};

// At exit (or when the library is unloaded) the helpers are told to stop and
// joined, so none runs on in code or memory that is going away. A child
// process made by fork() has none of the helpers to join.
Pool::~Pool() {
#if defined(__linux__)
    if (getpid() != owner_) {
        for (int i = 0; i < started_.load(); ++i) threads_[i].detach();
        return;
    }
#endif
    stopping_.store(true);
    hold(false);
    const int started = started_.load();
    for (int i = 0; i < started; ++i) wake(i);
    for (int i = 0; i < started; ++i) threads_[i].join();
}

void Pool::start_helpers(int wanted) {
    for (int i = started_.load(std::memory_order_relaxed); i < wanted; ++i) {
        try {
            threads_[i] = std::thread(&Pool::helper_main, this, i, generation_);
        } catch (const std::system_error&) {
            return;  // the loops make do with the helpers there are
        }
        started_.store(i + 1);
    }
}

// The loop is published and the signal changed before the sleeping flag is
// read (see sleep_until).
void Pool::wake(int index) {
    HelperSlot& slot = slots_[index];
    slot.signal.fetch_add(1);
    if (slot.sleeping.load()) parking_.wake(slot.signal);
}

bool Pool::run(int n, RowChunking split, int helpers, const RowBody& body) {
    if (split.chunk_count > kMaxChunks) return false;
    if (busy_.exchange(true, std::memory_order_acquire)) return false;
    const Clock::time_point start = Clock::now();
    if (start < backoff_until_) {
        busy_.store(false, std::memory_order_release);
        return false;
    }
    if (helpers > kMaxHelpers) helpers = kMaxHelpers;
    if (started_.load(std::memory_order_relaxed) < helpers) start_helpers(helpers);
    if (helpers > started_.load(std::memory_order_relaxed)) helpers = started_.load();
    if (helpers <= 0) {
        busy_.store(false, std::memory_order_release);
        return false;
    }

    const int chunk_count = split.chunk_count;
    rows_.store(n, std::memory_order_relaxed);
    rows_per_chunk_.store(split.chunk, std::memory_order_relaxed);
    helpers_wanted_.store(helpers, std::memory_order_relaxed);
    body_.store(&body, std::memory_order_relaxed);
    done_.store(0, std::memory_order_relaxed);
    generation_ = (generation_ + 1) & kGenerationMask;
    claim_.store(claim_word(generation_, chunk_count), std::memory_order_release);
    // Only the first helper is woken here; each helper wakes the next, so the
    // caller makes one wake-up call at most before it starts on the rows.
    wake(0);

    int count;
    for (int chunk; (chunk = claim(generation_, count)) >= 0;) {
        run_chunk(chunk, n, split.chunk, body);
        chunk_done(chunk_count);
    }

    // Every chunk is claimed; the ones not yet done are held by helpers that
    // are running them. As in wake(), the flag goes up before the count is
    // read again, and the count goes up before a helper reads the flag.
    auto all_done = [&] { return done_.load(std::memory_order_acquire) == chunk_count; };
    const Clock::time_point claimed_all = Clock::now();
    if (!poll_for(all_done, kCallerPoll)) {
        caller_sleeping_.store(true);
        for (int done; (done = done_.load()) != chunk_count;) parking_.park(done_, done);
        caller_sleeping_.store(false);
        const Clock::time_point now = Clock::now();
        note_wait(claimed_all - start, now - claimed_all, now);
    }
    busy_.store(false, std::memory_order_release);
    return true;
}

void Pool::note_wait(Clock::duration own_work, Clock::duration waited, Clock::time_point now) {
    if (waited <= kStallFloor || waited <= own_work) return;
    const bool soon_after_last =
        backoff_until_ != Clock::time_point{} && now - backoff_until_ < kStallsRepeatWithin;
    if (!soon_after_last) {
        backoff_level_ = 0;
    } else if (backoff_level_ < kMaxBackOffLevel) {
        ++backoff_level_;
    }
    backoff_until_ = now + kFirstBackOff * (1 << backoff_level_);
}

void Pool::run_chunk(int chunk, int n, int rows_per_chunk, const RowBody& body) {
    const int begin = chunk * rows_per_chunk;
    const int end = begin + (rows_per_chunk < n - begin ? rows_per_chunk : n - begin);
    for (int row = begin; row < end; ++row) body(row);
}

// Counts a finished chunk; the thread that finishes the last one wakes the
// caller if it has gone to sleep. (If the caller has already moved on, the
// wake-up finds a later loop's caller or none, and is only spurious.)
void Pool::chunk_done(int chunk_count) {
    if (done_.fetch_add(1) + 1 == chunk_count && caller_sleeping_.load()) parking_.wake(done_);
}

// The helper's flag goes up before it reads its signal: a wake() that has
// changed the signal before that read has also published its loop, which
// `ready` then sees; a later one sees the flag and wakes the futex.
template <typename Ready>
void Pool::sleep_until(HelperSlot& slot, Ready ready) {
    for (;;) {
        slot.sleeping.store(true);
        const int signal = slot.signal.load();
        if (ready()) break;
        parking_.park(slot.signal, signal);
    }
    slot.sleeping.store(false);
}

void Pool::helper_main(int index, uint32_t seen) {
    lower_wakeup_priority();
    HelperSlot& slot = slots_[index];
    auto new_loop = [&] {
        return generation_of(claim_.load(std::memory_order_acquire)) != seen ||
               stopping_.load(std::memory_order_relaxed);
    };
    for (;;) {
        if (!poll_for(new_loop, kHelperPoll)) sleep_until(slot, new_loop);
        if (stopping_.load()) return;
        seen = generation_of(claim_.load(std::memory_order_acquire));
        // Read after the generation: a stale value comes only with a
        // generation that has already ended, whose claims then fail.
        const int wanted = helpers_wanted_.load(std::memory_order_relaxed);
        if (index >= wanted) continue;
        if (index + 1 < wanted) wake(index + 1);
        if (hold_.load(std::memory_order_acquire)) wait_at_hold();
        claiming_.fetch_add(1);
        claim_chunks(seen);
        claiming_.fetch_sub(1);
    }
}

// The next chunk of that generation, or -1 when it has none left or has
// ended; `chunk_count` receives the generation's chunk count.
int Pool::claim(uint32_t generation, int& chunk_count) {
    uint64_t word = claim_.load(std::memory_order_acquire);
    do {
        chunk_count = chunk_count_of(word);
        if (generation_of(word) != generation || chunk_of(word) >= chunk_count) return -1;
    } while (!claim_.compare_exchange_weak(word, word + 1, std::memory_order_acq_rel,
                                           std::memory_order_acquire));
    return chunk_of(word);
}

void Pool::claim_chunks(uint32_t generation) {
    int chunk_count;
    for (int chunk; (chunk = claim(generation, chunk_count)) >= 0;) {
        run_chunk(chunk, rows_.load(std::memory_order_relaxed),
                  rows_per_chunk_.load(std::memory_order_relaxed),
                  *body_.load(std::memory_order_relaxed));
        chunk_done(chunk_count);
    }
}

void Pool::hold(bool held) {
    std::lock_guard<std::mutex> lock(hold_mutex_);
    hold_.store(held, std::memory_order_release);
    if (!held) hold_release_.notify_all();
}

void Pool::wait_at_hold() {
    std::unique_lock<std::mutex> lock(hold_mutex_);
    held_.fetch_add(1);
    hold_release_.wait(lock, [&] { return !hold_.load() || stopping_.load(); });
    held_.fetch_sub(1);
}

Pool& pool() {
    static Pool instance;
    return instance;
}

}  // namespace

bool run_with_helpers(int n, RowChunking split, int helpers, RowBody body) {
    return pool().run(n, split, helpers, body);
}

namespace row_helpers_testing {
void hold(bool held) { pool().hold(held); }
int held_count() { return pool().held_count(); }
int claiming_count() { return pool().claiming_count(); }
int started_count() { return pool().started_count(); }
bool backing_off() { return pool().backing_off(); }
void end_backoff() { pool().end_backoff(); }
}  // namespace row_helpers_testing

}  // namespace molo

#else  // no threads: every loop runs on its caller

namespace molo {

bool run_with_helpers(int, RowChunking, int, RowBody) { return false; }

namespace row_helpers_testing {
void hold(bool) {}
int held_count() { return 0; }
int claiming_count() { return 0; }
int started_count() { return 0; }
bool backing_off() { return false; }
void end_backoff() {}
}  // namespace row_helpers_testing

}  // namespace molo

#endif
