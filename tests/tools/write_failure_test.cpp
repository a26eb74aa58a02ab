// A run that cannot write its results, its annotated clip or its dump stops
// at that frame with the system's reason, and the lines before stay whole.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>

#include "tool_test_support.h"

TEST(WriteFailure, TheRunStopsAtTheFrameWithTheSystemsReason) {
    // Frame 1's skin plane cannot be created.
    const std::string dir = tool_test::scratch_path("dump");
    const std::string blocked = dir + "/frame_000001_skin.tif";
    mkdir(dir.c_str(), 0777);
    mkdir(blocked.c_str(), 0777);
    // A reader that has gone away, with SIGPIPE ignored as some shells do.
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    const auto old_handler = std::signal(SIGPIPE, SIG_IGN);
    const struct {
        std::vector<std::string> args;
        std::FILE* out;
        std::string message;
    } cases[] = {
        {{"-"}, std::fopen("/dev/full", "w"), "cannot write the results: No space left on device"},
        {{"-"}, fdopen(ends[1], "w"), "cannot write the results: Broken pipe"},
        {{"--annotate", "/dev/full", "-"},
         nullptr,
         "--annotate: cannot write /dev/full: No space left on device"},
        {{"--dump", dir, "-"}, nullptr, "cannot write " + blocked + ": Is a directory"},
    };
    for (const auto& c : cases) {
        const auto run = tool_test::run_tool(c.args, tool_test::y4m_stream(64, 48, 3), c.out);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.last_err_line(), "molo-fingerdetect: " + c.message);
        if (c.out != nullptr) std::fclose(c.out);
        if (c.args[0] == "-") {
            EXPECT_NE(run.err.find("frames: 0 (64x48)"), std::string::npos)
                << run.err;  // the header failed
        }
        if (c.args[0] == "--dump") {
            EXPECT_EQ(run.out_lines().size(), 3u);  // the header, frames 0 and 1
        }
    }
    std::signal(SIGPIPE, old_handler);
    std::remove(blocked.c_str());
    for (const char* plane : {"luma", "colour", "skin", "finger", "outline"}) {
        for (const char* f : {"0", "1"}) {
            std::remove((dir + "/frame_00000" + f + "_" + plane + ".tif").c_str());
        }
    }
    std::remove(dir.c_str());
}
