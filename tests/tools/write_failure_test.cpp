// A run that cannot write its results, its annotated clip or its dump stops
// at that frame with the system's reason, and the lines before stay whole.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "tool_test_support.h"

TEST(WriteFailure, TheRunStopsAtTheFrameWithTheSystemsReason) {
    // Frame 1's skin plane cannot be created.
    const std::string dir = tool_test::scratch_path("dump");
    const std::string blocked = dir + "/frame_000001_skin.tif";
    std::filesystem::create_directories(blocked);
    const struct {
        std::vector<std::string> args;
        std::FILE* out;
        std::string message;
    } cases[] = {
        {{"-"}, std::fopen("/dev/full", "w"), "cannot write the results: No space left on device"},
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
    std::filesystem::remove_all(dir);
}
