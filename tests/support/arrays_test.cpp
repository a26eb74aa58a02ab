#include <gtest/gtest.h>

#include <cstdlib>

#include "MoloFingerDetect.h"

// The blur kernel's storage: rows share one zeroed block.
TEST(Arrays, MatrixRowsShareOneZeroedBlock) {
    int** m = allocate_int_matrix(3, 4);
    EXPECT_EQ(m[1], m[0] + 4);
    EXPECT_EQ(m[2], m[0] + 8);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(m[0][i], 0);
    free_matrix(reinterpret_cast<void**>(m));
    // A 4-D array's top block has d1 slots; those past d0 stay empty.
    float**** a = allocate_float_4D(1, 3, 2, 2);
    EXPECT_EQ(a[2], nullptr);
    free_cube(reinterpret_cast<void***>(a[0]), 3);
    std::free(a);
}
