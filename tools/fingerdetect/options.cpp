#include "options.h"

#include "number_text.h"
#include "raw_reader.h"
#include "tiff_list_reader.h"

namespace fingerdetect {
namespace {

bool ends_with(const std::string& text, const std::string& suffix) {
    return text.size() >= suffix.size() &&
           text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// Sorts the positional arguments into one kind of input.
bool resolve_input(Options& options, bool have_size, std::string& error) {
    std::vector<std::string>& in = options.inputs;
    if (!in.empty() && in[0] == "demo") {
        if (in.size() > 1) {
            error = "the demo takes no input file (found \"" + in[1] + "\")";
            return false;
        }
        if (have_size || options.nv12) {
            error = "--size and --nv12 apply to raw input, not to the demo";
            return false;
        }
        in.clear();
        options.kind = InputKind::kDemo;
        return true;
    }
    if (in.empty()) {
        error =
            "no input given: a .y4m file, - for standard input, raw frames with --size WxH, "
            ".tif pictures, or demo";
        return false;
    }
    if (options.nv12 && !have_size) {
        error = "--nv12 applies to raw input, which needs --size WxH";
        return false;
    }
    size_t tiffs = 0;
    for (const std::string& path : in) tiffs += is_tiff_path(path) ? 1 : 0;
    if (tiffs == in.size()) {
        if (have_size) {
            error = "--size applies to raw input; TIFF pictures carry their own size";
            return false;
        }
        options.kind = InputKind::kTiffList;
        return true;
    }
    if (tiffs > 0 || in.size() > 1) {
        error = "one video input at a time (a list of inputs must be .tif pictures only)";
        return false;
    }
    if (have_size) {
        if (ends_with(in[0], ".y4m")) {
            error = "--size applies to raw input; " + in[0] +
                    " is a YUV4MPEG2 stream, which "
                    "carries its own size";
            return false;
        }
        options.kind = InputKind::kRaw;
        return true;
    }
    options.kind = InputKind::kY4m;
    return true;
}

// The on/off switches, which take no value.
bool* switch_named(Options& options, const std::string& arg) {
    if (arg == "-h" || arg == "--help") return &options.help;
    if (arg == "--json") return &options.json;
    if (arg == "--log") return &options.log;
    if (arg == "--nv12") return &options.nv12;
    return nullptr;
}

}  // namespace

bool parse_options(int argc, const char* const* argv, Options& options, std::string& error) {
    options = Options{};
    bool have_size = false;
    bool only_inputs = false;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (only_inputs || arg == "-" || arg.empty() || arg[0] != '-') {
            options.inputs.push_back(arg);
            continue;
        }
        if (arg == "--") {
            only_inputs = true;
            continue;
        }
        // "--name=value" and "--name value" are the same.
        std::string value;
        bool inline_value = false;
        const size_t equals = arg.find('=');
        if (arg.compare(0, 2, "--") == 0 && equals != std::string::npos) {
            value = arg.substr(equals + 1);
            arg = arg.substr(0, equals);
            inline_value = true;
        }
        auto take_value = [&](std::string& out) {
            if (inline_value) {
                out = value;
            } else if (i + 1 < argc) {
                out = argv[++i];
            } else {
                error = arg + " needs a value";
                return false;
            }
            if (out.empty()) {
                error = arg + " needs a value";
                return false;
            }
            return true;
        };
        auto no_value = [&]() {
            if (inline_value) error = arg + " takes no value";
            return !inline_value;
        };
        std::string text;
        if (bool* flag = switch_named(options, arg)) {
            if (!no_value()) return false;
            *flag = true;
        } else if (arg == "--size") {
            if (!take_value(text)) return false;
            if (!parse_frame_size(text, options.width, options.height, error)) return false;
            have_size = true;
        } else if (arg == "--orientation") {
            if (!take_value(text)) return false;
            if (text != "0" && text != "1") {
                error = "bad --orientation \"" + text +
                        "\": 0 (finger enters from the left) or "
                        "1 (from the right)";
                return false;
            }
            options.orientation = text[0] - '0';
        } else if (arg == "--gain") {
            if (!take_value(text)) return false;
            if (!parse_gain(text, options.camera.gain)) {
                error = "bad --gain \"" + text + "\": a number above 0 (1.0 = unity gain)";
                return false;
            }
        } else if (arg == "--cct") {
            if (!take_value(text)) return false;
            if (!parse_color_temp(text, options.camera.color_temp)) {
                error = "bad --cct \"" + text + "\": kelvin, " + std::to_string(kMinColorTemp) +
                        " to " + std::to_string(kMaxColorTemp);
                return false;
            }
        } else if (arg == "--meta") {
            if (!take_value(options.meta_path)) return false;
        } else if (arg == "--annotate") {
            if (!take_value(options.annotate_path)) return false;
            if (options.annotate_path == "-") {
                error = "--annotate needs a file name (standard output carries the results)";
                return false;
            }
        } else if (arg == "--dump") {
            if (!take_value(options.dump_dir)) return false;
        } else {
            error = "unknown option " + arg;
            return false;
        }
    }
    if (options.help) return true;
    return resolve_input(options, have_size, error);
}

std::string usage_text() {
    return "usage: molo-fingerdetect [options] INPUT\n"
           "       molo-fingerdetect [options] demo\n"
           "\n"
           "Runs the finger detector over every frame of INPUT and prints one line per frame.\n"
           "\n"
           "INPUT:\n"
           "  CLIP.y4m | -          YUV4MPEG2 stream, 4:2:0, progressive; - reads standard input\n"
           "                        (ffmpeg -i clip.mp4 -f yuv4mpegpipe - | molo-fingerdetect -)\n"
           "  --size WxH CLIP.nv21  raw NV21 frames back to back (ffmpeg -pix_fmt nv21 -f "
           "rawvideo)\n"
           "  A.tif B.tif ...       colour TIFF pictures, one per frame\n"
           "  demo                  the built-in demo clip\n"
           "\n"
           "options:\n"
           "  --size WxH            frame size of raw input\n"
           "  --nv12                raw chroma is U then V (NV12) instead of V then U\n"
           "  --orientation 0|1     side the finger enters from: 0 left (default), 1 right\n"
           "  --gain G              sensor gain for the whole clip, 1.0 = unity (default 1.0)\n"
           "  --cct K               white-balance colour temperature in kelvin (default 5000)\n"
           "  --meta FILE           per-frame gain and colour temperature: CSV rows of\n"
           "                        frame,gain,cct (frames count from 0); each row holds\n"
           "                        until the next\n"
           "  --json                JSON lines instead of CSV\n"
           "  --log                 the detector's own diagnostic messages on standard error\n"
           "  --annotate OUT.y4m    write the clip with the detector's decision drawn on it\n"
           "  --dump DIR            write each frame's working planes as TIFF pictures\n"
           "  -h, --help            this text\n"
           "\n"
           "Output: frame,result,row,col per frame on standard output (row and col, in frame\n"
           "pixels, only when result is 1); a summary on standard error.\n"
           "Exit status: 0 success, 1 unreadable or truncated input, 2 bad command line.\n";
}

}  // namespace fingerdetect
