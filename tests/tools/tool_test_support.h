// Scratch files, synthetic streams and captured runs for the tests of
// molo-fingerdetect.
#ifndef MOLO_TESTS_TOOLS_TOOL_TEST_SUPPORT_H
#define MOLO_TESTS_TOOLS_TOOL_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tool.h"

namespace tool_test {

// A path in the test's temporary directory, unique per test and process, so
// that suites of several builds can run side by side.
inline std::string scratch_path(const std::string& name) {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    return ::testing::TempDir() + "molo_tool_" + info->test_suite_name() + "_" + info->name() +
           "_" + std::to_string(getpid()) + "_" + name;
}

inline void write_file(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// A stream of flat 4:2:0 pictures: every luma byte 'y', every U byte 'u',
// every V byte 'v'; frame_tail follows each "FRAME".
inline std::string y4m_stream(int width, int height, int frames, const std::string& params = "",
                              const std::string& frame_tail = "") {
    std::string s =
        "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + params + "\n";
    const size_t cw = (width + 1) / 2, ch = (height + 1) / 2;
    for (int f = 0; f < frames; ++f) {
        s += "FRAME" + frame_tail + "\n";
        s += std::string(static_cast<size_t>(width) * height, 'y');
        s += std::string(cw * ch, 'u');
        s += std::string(cw * ch, 'v');
    }
    return s;
}

struct ToolRun {
    int status = -1;
    std::string out, err;
    std::vector<std::string> out_lines() const {
        std::vector<std::string> lines;
        std::istringstream in(out);
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }
    // The last line on standard error: the one-line message of a failed run.
    std::string last_err_line() const {
        std::string text = err;
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return text.substr(text.rfind('\n') + 1);
    }
};

// Runs the tool with args (without the program name), stdin_bytes as its
// standard input, capturing both output streams; or writing standard output
// to given_out, when set, which is left open and not read back.
inline ToolRun run_tool(const std::vector<std::string>& args, const std::string& stdin_bytes = "",
                        std::FILE* given_out = nullptr) {
    std::vector<const char*> argv{"molo-fingerdetect"};
    for (const std::string& a : args) argv.push_back(a.c_str());
    std::FILE* in = std::tmpfile();
    std::FILE* out = given_out != nullptr ? given_out : std::tmpfile();
    std::FILE* err = std::tmpfile();
    std::fwrite(stdin_bytes.data(), 1, stdin_bytes.size(), in);
    std::rewind(in);
    ToolRun run;
    run.status = fingerdetect::run_tool(static_cast<int>(argv.size()), argv.data(), {in, out, err});
    for (auto [file, text] : {std::pair{out, &run.out}, std::pair{err, &run.err}}) {
        if (file == given_out) continue;
        std::fflush(file);
        std::rewind(file);
        char buf[4096];
        for (size_t n; (n = std::fread(buf, 1, sizeof buf, file)) > 0;) text->append(buf, n);
        std::fclose(file);
    }
    std::fclose(in);
    return run;
}

}  // namespace tool_test

#endif  // MOLO_TESTS_TOOLS_TOOL_TEST_SUPPORT_H
