// The molo-fingerdetect program: reads a clip, runs the detector through its
// C interface on every frame as a camera client would, and reports what the
// client gets back.
#ifndef MOLO_TOOL_TOOL_H
#define MOLO_TOOL_TOOL_H

#include <cstdio>

namespace fingerdetect {

// Exit statuses.
constexpr int kExitOk = 0;
constexpr int kExitBadInput = 1;  // an input or output file that cannot be used
constexpr int kExitUsage = 2;     // a bad command line

struct ToolStreams {
    std::FILE* in;   // read for the input "-"
    std::FILE* out;  // per-frame results
    std::FILE* err;  // messages, progress and the summary
};

int run_tool(int argc, const char* const* argv, const ToolStreams& io);

}  // namespace fingerdetect

#endif  // MOLO_TOOL_TOOL_H
