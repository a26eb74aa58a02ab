// Drives molo-fingerdetect's readers with anything: a command line for the
// option parser, a meta file for its parser and a stream for the YUV4MPEG2 or
// the raw reader, and hands what they accept to the detector as the tool
// does. An input is ARGS NUL META NUL STREAM, the arguments one per line;
// without two NUL bytes the whole input is a stream. A command line the
// parser refuses leaves the defaults, so the stream is read anyway.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "MoloFingerDetect.h"
#include "frame.h"
#include "meta_file.h"
#include "options.h"
#include "raw_reader.h"
#include "y4m_reader.h"

using namespace fingerdetect;

namespace {

// Larger pictures are read but not analysed, and at most this many frames
// are, so that every input runs in a few milliseconds.
constexpr long kMaxPixels = 320 * 240;
constexpr long kMaxFrames = 4;

std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// A stream over bytes that the reader closes; fmemopen takes no empty buffer
// from a null pointer, so an empty text still gets one byte of storage.
std::FILE* open_text(std::string& text) {
    text.reserve(1);
    return fmemopen(&text[0], text.size(), "r");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::string args_text, meta_text, stream = input;
    const size_t first = input.find('\0');
    const size_t second = first == std::string::npos ? first : input.find('\0', first + 1);
    if (second != std::string::npos) {
        args_text = input.substr(0, first);
        meta_text = input.substr(first + 1, second - first - 1);
        stream = input.substr(second + 1);
    }

    std::vector<std::string> args = split_lines(args_text);
    args.insert(args.begin(), "molo-fingerdetect");
    std::vector<const char*> argv;
    for (const std::string& a : args) argv.push_back(a.c_str());
    Options options;
    std::string error;
    if (!parse_options(static_cast<int>(argv.size()), argv.data(), options, error)) {
        options = Options{};
    }

    MetaTrack meta;
    const bool have_meta =
        !meta_text.empty() && meta.open(open_text(meta_text), "meta", true, error);

    std::unique_ptr<FrameSource> source;
    std::FILE* in = open_text(stream);
    if (options.kind == InputKind::kRaw) {
        // The raw reader sizes its frame as the command line says.
        if (static_cast<long>(options.width) * options.height > kMaxPixels) {
            std::fclose(in);
            return 0;
        }
        source = std::make_unique<RawReader>(in, "raw", true, options.width, options.height,
                                             !options.nv12);
    } else {
        auto reader = std::make_unique<Y4mReader>(in, "y4m", true);
        if (!reader->start(error)) return 0;
        source = std::move(reader);
    }
    const int width = source->width();
    const int height = source->height();
    void* handle = static_cast<long>(width) * height <= kMaxPixels
                       ? MoloFinDetect_Initialize(nullptr, width, height, nullptr)
                       : nullptr;
    Frame frame;
    for (long n = 0; source->next(frame, error) == ReadStatus::kFrame; ++n) {
        CameraState camera = options.camera;
        if (have_meta && !meta.at(n, options.camera, camera, error)) break;
        if (handle == nullptr || n >= kMaxFrames) continue;
        int row = -1, col = -1;
        MoloFinDetect_Execute(handle, frame.y.data(), frame.vu.data(), options.orientation,
                              frame.stride, frame.ds_mode(), camera.gain, camera.color_temp, &row,
                              &col);
    }
    MoloFinDetect_Finalize(handle, nullptr, 0);
    return 0;
}
