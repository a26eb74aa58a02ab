#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "prep/parallel_rows.h"

TEST(ParallelRows, EveryRowExactlyOnce) {
    for (int contexts : {1, 2, 4, 7}) {
        molo::set_execution_contexts(contexts);
        for (int n : {-5, 0, 1, 10, 100, 257}) {
            std::vector<std::atomic<int>> calls(n > 0 ? n : 0);
            auto body = [&](int row) { calls[row].fetch_add(1); };
            molo::parallel_rows(n, body);
            for (int i = 0; i < n; ++i) ASSERT_EQ(calls[i].load(), 1) << "row " << i;
        }
    }
    molo::set_execution_contexts(0);
}
