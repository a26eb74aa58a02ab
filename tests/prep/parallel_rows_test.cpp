#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "prep/parallel_rows.h"

namespace {

// Restores the process default after each test.
class ParallelRows : public ::testing::Test {
protected:
    void TearDown() override { molo::set_execution_contexts(0); }
};

}  // namespace

TEST_F(ParallelRows, ChunkArithmetic) {
    struct Case {
        int n, p, chunk, count;
    };
    const Case cases[] = {
        {1, 4, 1, 1},      // one row, several contexts: one claim
        {10, 4, 1, 10},    // 10 / 16 = 0, raised to 1
        {100, 4, 6, 17},   // last claim covers rows 96..99
        {100, 1, 25, 4},   {7, 1, 1, 7},  // 7 / 4 = 1 is below 2: still 1
        {8, 1, 2, 4},      {134, 2, 16, 9},
    };
    for (const Case& c : cases) {
        const molo::RowChunking split = molo::row_chunking(c.n, c.p);
        EXPECT_EQ(split.chunk, c.chunk) << c.n << " rows, " << c.p << " contexts";
        EXPECT_EQ(split.chunk_count, c.count) << c.n << " rows, " << c.p << " contexts";
    }
    EXPECT_EQ(molo::row_chunking(0, 4).chunk_count, 0);
    EXPECT_EQ(molo::row_chunking(-3, 4).chunk_count, 0);
}

TEST_F(ParallelRows, EveryRowExactlyOnce) {
    for (int contexts : {1, 2, 4, 7}) {
        molo::set_execution_contexts(contexts);
        for (int n : {-5, 0, 1, 10, 100, 257}) {
            std::vector<std::atomic<int>> calls(n > 0 ? n : 0);
            std::atomic<int> total{0};
            auto body = [&](int row) {
                calls[row].fetch_add(1);
                total.fetch_add(1);
            };
            molo::parallel_rows(n, body);
            ASSERT_EQ(total.load(), n > 0 ? n : 0);
            for (int i = 0; i < n; ++i) ASSERT_EQ(calls[i].load(), 1) << "row " << i;
        }
    }
}

TEST_F(ParallelRows, OneContextRunsInOrderOnTheCaller) {
    molo::set_execution_contexts(1);
    std::vector<int> order;
    const auto caller = std::this_thread::get_id();
    bool same_thread = true;
    auto body = [&](int row) {
        order.push_back(row);
        same_thread = same_thread && std::this_thread::get_id() == caller;
    };
    molo::parallel_rows(50, body);
    ASSERT_EQ(order.size(), 50u);
    for (int i = 0; i < 50; ++i) EXPECT_EQ(order[i], i);
    EXPECT_TRUE(same_thread);
}
