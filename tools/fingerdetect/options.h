// The command line of molo-fingerdetect.
#ifndef MOLO_TOOL_OPTIONS_H
#define MOLO_TOOL_OPTIONS_H

#include <string>
#include <vector>

#include "meta_file.h"

namespace fingerdetect {

enum class InputKind {
    kY4m,       // a YUV4MPEG2 stream: a file, or "-" for standard input
    kRaw,       // raw NV21 (or NV12) frames of the size given by --size
    kTiffList,  // colour TIFF pictures, one per frame
    kDemo,      // the built-in demo clip
};

struct Options {
    bool help = false;
    InputKind kind = InputKind::kY4m;
    std::vector<std::string> inputs;  // paths ("-" = standard input); empty for the demo
    int width = 0;                    // --size, raw input only
    int height = 0;
    bool nv12 = false;    // raw chroma stored U then V
    int orientation = 0;  // side the finger enters from: 0 left, 1 right
    CameraState camera;   // --gain and --cct, or the defaults
    std::string meta_path;
    bool json = false;
    bool log = false;
    std::string annotate_path;
    std::string dump_dir;
};

// Parses argv[1..argc-1]. On failure returns false with a one-line reason.
bool parse_options(int argc, const char* const* argv, Options& options, std::string& error);

// The --help text.
std::string usage_text();

}  // namespace fingerdetect

#endif  // MOLO_TOOL_OPTIONS_H
