// A run that cannot write its results, its annotated clip or its dump stops
// at that frame with the system's reason, and what it wrote before is whole.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>

#include "tool_test_support.h"

using tool_test::run_tool;
using tool_test::scratch_path;
using tool_test::y4m_stream;

TEST(WriteFailure, ResultsThatCannotBeWrittenEndTheRun) {
    std::FILE* full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    const auto run = run_tool({"-"}, y4m_stream(64, 48, 3), full);
    std::fclose(full);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.last_err_line(),
              "molo-fingerdetect: cannot write the results: No space left on device");

    // A reader that has gone away, with SIGPIPE ignored as some shells do.
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    const auto old_handler = std::signal(SIGPIPE, SIG_IGN);
    std::FILE* pipe_out = fdopen(ends[1], "w");
    const auto piped = run_tool({"-"}, y4m_stream(64, 48, 3), pipe_out);
    std::fclose(pipe_out);
    std::signal(SIGPIPE, old_handler);
    EXPECT_EQ(piped.status, 1);
    EXPECT_EQ(piped.last_err_line(), "molo-fingerdetect: cannot write the results: Broken pipe");
}

TEST(WriteFailure, AnnotationAndDumpFailuresKeepTheReasonAndTheLinesBefore) {
    const auto annotated = run_tool({"--annotate", "/dev/full", "-"}, y4m_stream(64, 48, 3));
    EXPECT_EQ(annotated.status, 1);
    EXPECT_EQ(annotated.last_err_line(),
              "molo-fingerdetect: --annotate: cannot write /dev/full: No space left on device");

    // The skin plane of frame 1 cannot be created: the results hold frames 0
    // and 1, whole, and nothing after.
    const std::string dir = scratch_path("dump");
    const std::string blocked = dir + "/frame_000001_skin.tif";
    mkdir(dir.c_str(), 0777);
    mkdir(blocked.c_str(), 0777);
    const auto dumped = run_tool({"--dump", dir, "-"}, y4m_stream(64, 48, 3));
    EXPECT_EQ(dumped.status, 1);
    EXPECT_EQ(dumped.last_err_line(),
              "molo-fingerdetect: cannot write " + blocked + ": Is a directory");
    const auto lines = dumped.out_lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2].rfind("1,", 0), 0u);
    EXPECT_EQ(dumped.out.back(), '\n');
    std::remove(blocked.c_str());
    for (int f = 0; f < 2; ++f) {
        for (const char* plane : {"luma", "colour", "skin", "finger", "outline"}) {
            std::remove((dir + "/frame_00000" + std::to_string(f) + "_" + plane + ".tif").c_str());
        }
    }
    std::remove(dir.c_str());
}
