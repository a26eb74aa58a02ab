#include <gtest/gtest.h>

#include <cmath>

#include "MoloFingerDetect.h"

TEST(Statistics, Mean) {
    float v[] = {1, 2, 3, 4};
    EXPECT_FLOAT_EQ(mean(v, 4), 2.5f);
    EXPECT_TRUE(std::isnan(mean(v, 0)));
}

TEST(Statistics, MedianOfOrdinaryInput) {
    float odd[] = {5, 1, 3};
    EXPECT_FLOAT_EQ(median(odd, 3), 3.0f);
    // The two smallest were extracted and overwritten with the maximum.
    EXPECT_FLOAT_EQ(odd[0], 5.0f);
    EXPECT_FLOAT_EQ(odd[1], 5.0f);
    EXPECT_FLOAT_EQ(odd[2], 5.0f);

    float even[] = {4, 1, 3, 2};
    EXPECT_FLOAT_EQ(median(even, 4), 2.5f);

    float one[] = {7};
    EXPECT_FLOAT_EQ(median(one, 1), 7.0f);
    float none[] = {9};
    EXPECT_FLOAT_EQ(median(none, 0), 9.0f);  // reads the first element anyway
}

TEST(Statistics, MedianKeepsItsSentinelQuirks) {
    // The running maximum starts at 0: extracted negatives become 0, and the
    // result is still the middle value.
    float negative[] = {-3, -1, -2};
    EXPECT_FLOAT_EQ(median(negative, 3), -2.0f);
    EXPECT_FLOAT_EQ(negative[0], 0.0f);

    // Values at or above 2^29 never become the minimum.
    float huge[] = {6e8f, 7e8f, 8e8f};
    EXPECT_FLOAT_EQ(median(huge, 3), 536870912.0f);

    // Ties go to the later index.
    float ties[] = {1, 1, 9};
    EXPECT_FLOAT_EQ(median(ties, 3), 1.0f);
    EXPECT_FLOAT_EQ(ties[0], 9.0f);  // second pass took index 0 after index 1
    EXPECT_FLOAT_EQ(ties[1], 9.0f);
}

TEST(Timestamp, ReturnsWhatItWritesInMilliseconds) {
    long long out = 0;
    const long long t = timestamp(&out);
    EXPECT_EQ(t, out);
    EXPECT_GT(t, 1600000000000LL);  // milliseconds since the epoch, after 2020
}
