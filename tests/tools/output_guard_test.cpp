// Outputs never alias inputs: the annotated clip and the plane dumps never
// land on a file the run reads, nor on standard output, whatever name or link
// leads there; the file is left as it was.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "MoloFingerDetect.h"
#include "demo_scene.h"
#include "tool_test_support.h"

using tool_test::read_file;
using tool_test::run_tool;
using tool_test::scratch_path;
using tool_test::write_file;
using tool_test::y4m_stream;

TEST(OutputGuard, NoOutputLandsOnAFileTheRunReads) {
    const std::string clip = scratch_path("clip.y4m");
    const std::string sym = scratch_path("link.y4m");
    const std::string meta = scratch_path("m.csv");
    const std::string dir = scratch_path("dump");
    const std::string picture = dir + "/frame_000000_colour.tif";
    const std::string elsewhere = scratch_path("x.tif");
    write_file(clip, y4m_stream(64, 48, 2));
    write_file(meta, "frame,gain,cct\n0,1,5000\n");
    ASSERT_EQ(symlink(clip.c_str(), sym.c_str()), 0);
    mkdir(dir.c_str(), 0777);
    fingerdetect::Frame frame;
    fingerdetect::DemoScene::render(0, frame);
    std::vector<char> path(picture.begin(), picture.end());
    path.push_back('\0');
    ASSERT_EQ(TIFF_Save_YUV2RGB(frame.y.data(), frame.vu.data(), frame.width, frame.height,
                                path.data()), 0);
    ASSERT_EQ(link(picture.c_str(), elsewhere.c_str()), 0);
    std::FILE* const out = std::tmpfile();
    const std::string stdout_path = "/proc/self/fd/" + std::to_string(fileno(out));

    struct Case {
        std::vector<std::string> args;
        int status;
        std::string message;
    };
    const std::vector<Case> cases = {
        {{"--annotate", meta, "--meta", meta, clip}, 2, "would overwrite the --meta file"},
        {{"--annotate", sym, clip}, 2, "would overwrite the input " + clip},
        {{"--annotate", stdout_path, clip}, 2, "would overwrite standard output"},
        {{"--dump", dir, picture}, 2, "--dump " + dir + " would overwrite the input"},
        // A hard link under another name is found when the file is written.
        {{"--dump", dir, elsewhere}, 1, "--dump: " + picture + " would overwrite the input"},
    };
    const std::string before = read_file(picture);
    for (const Case& c : cases) {
        const auto run = run_tool(c.args, "", out);
        EXPECT_EQ(run.status, c.status) << run.err;
        EXPECT_NE(run.last_err_line().find(c.message), std::string::npos) << run.err;
    }
    EXPECT_EQ(read_file(meta), "frame,gain,cct\n0,1,5000\n");
    EXPECT_EQ(read_file(clip), y4m_stream(64, 48, 2));
    EXPECT_EQ(read_file(picture), before);
    std::fclose(out);
    for (const auto& p : {clip, sym, meta, picture, elsewhere, dir + "/frame_000000_luma.tif"}) {
        std::remove(p.c_str());
    }
    std::remove(dir.c_str());
}
