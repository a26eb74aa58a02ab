#include <gtest/gtest.h>

#include "MoloFingerDetect.h"

// Nothing on the frame path takes a median; one test of its result, with
// the running maximum that starts at 0, the values too large to be chosen
// and the ties that go to the later index.
TEST(Statistics, MeanAndMedian) {
    float v[] = {1, 2, 3, 4};
    EXPECT_FLOAT_EQ(mean(v, 4), 2.5f);
    EXPECT_FLOAT_EQ(median(v, 4), 2.5f);
    float negative[] = {-3, -1, -2};
    EXPECT_FLOAT_EQ(median(negative, 3), -2.0f);
    EXPECT_FLOAT_EQ(negative[0], 0.0f);
    float huge[] = {6e8f, 7e8f, 8e8f};  // at or above 2^29: never the minimum
    EXPECT_FLOAT_EQ(median(huge, 3), 536870912.0f);
    float ties[] = {1, 1, 9};
    EXPECT_FLOAT_EQ(median(ties, 3), 1.0f);
    EXPECT_FLOAT_EQ(ties[0], 9.0f);
}
