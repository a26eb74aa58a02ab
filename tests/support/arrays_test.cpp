#include <gtest/gtest.h>

#include <cstdlib>

#include "MoloFingerDetect.h"

TEST(Arrays, MatrixRowsShareOneZeroedBlock) {
    int** m = allocate_int_matrix(3, 4);
    EXPECT_EQ(m[1], m[0] + 4);
    EXPECT_EQ(m[2], m[0] + 8);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(m[0][i], 0);
    free_matrix(reinterpret_cast<void**>(m));

    double** d = allocate_double_matrix(2, 3);
    EXPECT_EQ(d[1], d[0] + 3);
    free_matrix(reinterpret_cast<void**>(d));
}

TEST(Arrays, CubePlanesAreSeparateMatrices) {
    float*** c = allocate_float_cube(2, 3, 4);
    EXPECT_NE(c[0][0], c[1][0]);
    EXPECT_EQ(c[1][2], c[1][0] + 8);
    c[1][2][3] = 5.0f;
    EXPECT_EQ(c[0][2][3], 0.0f);
    free_cube(reinterpret_cast<void***>(c), 2);
}

TEST(Arrays, FourDTopBlockIsSizedBySecondDimension) {
    // Two cubes in a top block of three slots; the third slot stays null.
    float**** a = allocate_float_4D(2, 3, 1, 1);
    ASSERT_NE(a[0], nullptr);
    ASSERT_NE(a[1], nullptr);
    EXPECT_EQ(a[2], nullptr);
    a[1][2][0][0] = 1.0f;
    for (int i = 0; i < 2; ++i) free_cube(reinterpret_cast<void***>(a[i]), 3);
    std::free(a);
}
