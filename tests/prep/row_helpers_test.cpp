// The helper pool under the schedules a busy device produces: helpers that
// never run, helpers that wake after their loop has ended, and a helper that
// holds a chunk while the caller has nothing left to do. The hold hook stops
// helpers at a fixed point instead of relying on timing.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "prep/parallel_rows.h"
#include "prep/row_helpers.h"

namespace {

namespace hooks = molo::row_helpers_testing;

// Waits (yielding) until `ready` holds; false after ten seconds.
template <typename Ready>
bool eventually(Ready ready) {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!ready()) {
        if (std::chrono::steady_clock::now() > give_up) return false;
        std::this_thread::yield();
    }
    return true;
}

// Counts the calls of every row, in storage of its own that a test can free.
struct RowCounter {
    explicit RowCounter(int n) : calls(n) {}
    void operator()(int row) {
        calls[row].fetch_add(1);
        if (std::this_thread::get_id() != caller) off_caller.fetch_add(1);
    }
    bool each_once() const {
        return std::all_of(calls.begin(), calls.end(), [](const auto& c) { return c.load() == 1; });
    }
    std::vector<std::atomic<int>> calls;
    std::atomic<int> off_caller{0};
    std::thread::id caller = std::this_thread::get_id();
};

class RowHelpers : public ::testing::Test {
protected:
    void SetUp() override {
        molo::set_execution_contexts(4);
        hooks::end_backoff();
        RowCounter warm(64);
        molo::parallel_rows(64, warm);  // starts the helpers
        if (hooks::started_count() == 0) GTEST_SKIP() << "built without helper threads";
    }
    void TearDown() override {
        hooks::hold(false);
        EXPECT_TRUE(eventually([] { return hooks::held_count() + hooks::claiming_count() == 0; }));
        molo::set_execution_contexts(0);
    }
};

}  // namespace

TEST_F(RowHelpers, HelpersThatNeverRunLeaveEveryLoopToTheCaller) {
    hooks::hold(true);
    for (int loop = 0; loop < 50; ++loop) {
        RowCounter rows(100);
        molo::parallel_rows(100, rows);
        ASSERT_TRUE(rows.each_once()) << "loop " << loop;
        ASSERT_EQ(rows.off_caller.load(), 0);
    }
}

// Helpers held while they wake for a loop are released only after it and a
// second loop have ended and both bodies are freed: they must find nothing
// to claim (AddressSanitizer reports any touch of the freed bodies).
TEST_F(RowHelpers, HelpersThatWakeAfterTheirLoopEndedTouchNothingOfIt) {
    hooks::hold(true);
    auto first = std::make_unique<RowCounter>(100);
    molo::parallel_rows(100, *first);
    EXPECT_TRUE(first->each_once());
    ASSERT_TRUE(eventually([] { return hooks::held_count() == 3; }));
    first.reset();
    auto second = std::make_unique<RowCounter>(50);
    molo::parallel_rows(50, *second);
    EXPECT_TRUE(second->each_once());
    second.reset();
    hooks::hold(false);
    ASSERT_TRUE(eventually([] { return hooks::held_count() + hooks::claiming_count() == 0; }));
    RowCounter after(100);
    molo::parallel_rows(100, after);
    EXPECT_TRUE(after.each_once());
}

// A helper that holds a chunk keeps the caller until the chunk is done, even
// when the caller has run out of chunks long before.
TEST_F(RowHelpers, TheCallerWaitsForAChunkAHelperHolds) {
    molo::set_execution_contexts(2);
    std::atomic<bool> helper_started{false};
    std::atomic<bool> helper_finished{false};
    RowCounter rows(64);
    auto body = [&](int row) {
        if (std::this_thread::get_id() == rows.caller) {
            // The caller's first row waits for a helper to take a chunk.
            if (row == 0) eventually([&] { return helper_started.load(); });
        } else if (!helper_started.exchange(true)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            helper_finished = true;
        }
        rows(row);
    };
    molo::parallel_rows(64, body);
    ASSERT_TRUE(helper_started.load()) << "no helper ran";
    EXPECT_TRUE(helper_finished.load());
    EXPECT_TRUE(rows.each_once());

    // That wait was far longer than the caller's own rows: the next loops
    // stay on the caller, until the back-off ends.
    EXPECT_TRUE(hooks::backing_off());
    RowCounter after(64);
    molo::parallel_rows(64, after);
    EXPECT_TRUE(after.each_once());
    EXPECT_EQ(after.off_caller.load(), 0);
    hooks::end_backoff();
    RowCounter again(4096);
    molo::parallel_rows(4096, again, molo::kMinParallelWork);
    EXPECT_TRUE(again.each_once());
}
