#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "MoloFingerDetect.h"
#include "common/log_capture.h"

TEST(Property, EnvironmentBackend) {
    char value[92];
    EXPECT_EQ(android_property_get("Molo.Test.prop", value, "0"), 0);
    EXPECT_STREQ(value, "0");
    setenv("Molo_Test_prop", "7", 1);  // shells cannot export dotted names
    EXPECT_EQ(android_property_get("Molo.Test.prop", value, "0"), 1);
    EXPECT_STREQ(value, "7");
    setenv("Molo.Test.prop", "", 1);  // the exact name wins; empty means missing
    EXPECT_EQ(android_property_get("Molo.Test.prop", value, "dflt"), 0);
    EXPECT_STREQ(value, "dflt");
    setenv("Molo.Test.prop", std::string(200, 'x').c_str(), 1);
    EXPECT_EQ(android_property_get("Molo.Test.prop", value, "0"), 91);
    EXPECT_EQ(std::string(value), std::string(91, 'x'));
    unsetenv("Molo.Test.prop");
    unsetenv("Molo_Test_prop");
}

TEST(Log, HostLineOnStderrUnlessAHookTakesTheMessages) {
    ::testing::internal::CaptureStderr();
    molo::log_print(molo::kLogDebug, "%d:hello\n", 3);
    molo::log_print(molo::kLogError, "plain");
    {
        LogCapture capture;
        molo::log_print(molo::kLogDebug, "a %d\n", 1);
        molo::log_print(molo::kLogError, "b");
        EXPECT_EQ(capture.messages(), (std::vector<LoggedMessage>{{3, "a 1\n"}, {6, "b"}}));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "D/MOLO_FINGERDETECT: 3:hello\nE/MOLO_FINGERDETECT: plain\n");
}
