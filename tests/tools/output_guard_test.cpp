// Outputs never alias inputs: the annotated clip and the plane dumps never
// land on a file the run reads, nor on standard output, whatever name or link
// leads there; the file is left as it was.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tool_test_support.h"

using tool_test::read_file;
using tool_test::run_tool;
using tool_test::scratch_path;
using tool_test::write_file;

TEST(OutputGuard, NoOutputLandsOnAFileTheRunReads) {
    const std::string clip = scratch_path("clip.y4m"), sym = scratch_path("link.y4m");
    const std::string meta = scratch_path("m.csv"), dir = scratch_path("dump");
    const std::string picture = dir + "/frame_000000_colour.tif";  // read, never parsed
    const std::string hard_link = dir + "/frame_000000_luma.tif";
    const std::string stream = tool_test::y4m_stream(64, 48, 2);
    write_file(clip, stream);
    write_file(meta, "0,1,5000\n");
    mkdir(dir.c_str(), 0777);
    write_file(picture, "II*");
    ASSERT_EQ(symlink(clip.c_str(), sym.c_str()), 0);
    ASSERT_EQ(link(clip.c_str(), hard_link.c_str()), 0);
    std::FILE* const out = std::tmpfile();
    const std::string stdout_path = "/proc/self/fd/" + std::to_string(fileno(out));

    const struct {
        std::vector<std::string> args;
        int status;
        std::string message;
    } cases[] = {
        {{"--annotate", meta, "--meta", meta, clip}, 2, "would overwrite the --meta file"},
        {{"--annotate", sym, clip}, 2, "would overwrite the input " + clip},
        {{"--annotate", stdout_path, clip}, 2, "would overwrite standard output"},
        {{"--dump", dir, picture}, 2, "--dump " + dir + " would overwrite the input"},
        // A hard link under a dump name is found when the file is written.
        {{"--dump", dir, clip}, 1, "--dump: " + hard_link + " would overwrite the input"},
    };
    for (const auto& c : cases) {
        const auto run = run_tool(c.args, "", out);
        EXPECT_EQ(run.status, c.status) << run.err;
        EXPECT_NE(run.last_err_line().find(c.message), std::string::npos) << run.err;
    }
    EXPECT_EQ(read_file(meta), "0,1,5000\n");
    EXPECT_EQ(read_file(clip), stream);
    EXPECT_EQ(read_file(picture), "II*");
    std::fclose(out);
    for (const auto& p : {clip, sym, meta}) std::remove(p.c_str());
    std::filesystem::remove_all(dir);
}
