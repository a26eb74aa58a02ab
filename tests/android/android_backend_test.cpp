// The Android backend of the log and the property reader, compiled on the host
// against stand-in platform headers. The stand-in functions below record what
// the library hands to the platform.
#include <gtest/gtest.h>

#include <android/log.h>
#include <sys/system_properties.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "molo/support.h"
#include "support/log.h"

namespace {

// Priority, tag and text of a line handed to the system log.
using PlatformLine = std::tuple<int, std::string, std::string>;

std::vector<PlatformLine> g_lines;
std::map<std::string, std::string> g_properties;
std::vector<std::string> g_property_reads;

}  // namespace

extern "C" int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    char text[2048];
    va_list args;
    va_start(args, fmt);
    const int n = std::vsnprintf(text, sizeof text, fmt, args);
    va_end(args);
    g_lines.emplace_back(prio, tag, text);
    return n;
}

extern "C" int __system_property_get(const char* name, char* value) {
    g_property_reads.push_back(name);
    const auto it = g_properties.find(name);
    const std::string found = it == g_properties.end() ? "" : it->second;
    std::snprintf(value, PROP_VALUE_MAX, "%s", found.c_str());
    return static_cast<int>(std::strlen(value));
}

TEST(AndroidBackend, LogGoesToTheSystemLogUnderTheTagWithItsPriority) {
    g_lines.clear();
    ::testing::internal::CaptureStderr();
    molo::log_print(molo::kLogDebug, "%d: region %d is too small\n", 2, 7);
    molo::log_print(molo::kLogError, "error! orientation is wrong.\n");
    molo::log_print(molo::kLogDebug, "100%% %s", "literal");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    const std::vector<PlatformLine> expected{
        {ANDROID_LOG_DEBUG, "MOLO_FINGERDETECT", "2: region 7 is too small\n"},
        {ANDROID_LOG_ERROR, "MOLO_FINGERDETECT", "error! orientation is wrong.\n"},
        {ANDROID_LOG_DEBUG, "MOLO_FINGERDETECT", "100% literal"},
    };
    EXPECT_EQ(g_lines, expected);
}

TEST(AndroidBackend, PropertyIsReadFromSystemPropertiesByItsDottedName) {
    g_properties.clear();
    g_property_reads.clear();
    char value[PROP_VALUE_MAX];
    EXPECT_EQ(android_property_get("Molo.FingerDetection.enable.log", value, "0"), 0);
    EXPECT_STREQ(value, "0");
    g_properties["Molo.FingerDetection.enable.log"] = "1";
    EXPECT_EQ(android_property_get("Molo.FingerDetection.enable.log", value, "0"), 1);
    EXPECT_STREQ(value, "1");
    EXPECT_EQ(g_property_reads, (std::vector<std::string>{"Molo.FingerDetection.enable.log",
                                                          "Molo.FingerDetection.enable.log"}));
}
