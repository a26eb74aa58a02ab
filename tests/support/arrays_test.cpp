#include <gtest/gtest.h>

#include "MoloFingerDetect.h"

// The blur kernel's storage: rows share one zeroed block.
TEST(Arrays, MatrixRowsShareOneZeroedBlock) {
    int** m = allocate_int_matrix(3, 4);
    EXPECT_EQ(m[1], m[0] + 4);
    EXPECT_EQ(m[2], m[0] + 8);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(m[0][i], 0);
    free_matrix(reinterpret_cast<void**>(m));
}
