#include <gtest/gtest.h>

#include "debug/dump_files.h"

using TextDump = DumpFiles;

TEST_F(TextDump, ListsRowColumnValue) {
    std::vector<float> f = {1.5f, -0.25f, 1e6f, 0.0f, 2.0f, 3.0f};  // 3 wide, 2 high
    std::vector<int> n = {7, -8, 9, 10, 11, 12};
    ASSERT_EQ(Write_Text(rows_of(f, 3).data(), 3, 2, path("f.txt")), 0);
    ASSERT_EQ(Write_Text(n.data(), 3, 2, path("n.txt")), 0);
    EXPECT_EQ(contents(path("f.txt")),
              "0 0 1.500000\n0 1 -0.250000\n0 2 1000000.000000\n"
              "1 0 0.000000\n1 1 2.000000\n1 2 3.000000\n");
    EXPECT_EQ(contents(path("n.txt")), "0 0 7\n0 1 -8\n0 2 9\n1 0 10\n1 1 11\n1 2 12\n");
    EXPECT_NE(Write_Text(n.data(), 3, 2, path("no/such/folder/x.txt")), 0);
}
