#include "tool.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "MoloFingerDetect.h"
#include "annotation.h"
#include "decision_state.h"
#include "demo_scene.h"
#include "frame.h"
#include "meta_file.h"
#include "options.h"
#include "plane_dump.h"
#include "progress_bar.h"
#include "raw_reader.h"
#include "result_writer.h"
#include "summary.h"
#include "tiff_list_reader.h"
#include "y4m_reader.h"
#include "y4m_writer.h"

namespace fingerdetect {
namespace {

constexpr char kName[] = "molo-fingerdetect";
// The library reads its logging switch from this property once, when a
// detector is initialised; on the host the property is an environment variable.
constexpr char kLogProperty[] = "Molo.FingerDetection.enable.log";

int fail(const ToolStreams& io, int status, const std::string& message) {
    std::fprintf(io.err, "%s: %s\n", kName, message.c_str());
    return status;
}

// Opens path for reading, or hands out standard input for "-".
std::FILE* open_input(const std::string& path, const ToolStreams& io, std::string& name,
                      bool& owned, std::string& error) {
    if (path == "-") {
        name = "standard input";
        owned = false;
        return io.in;
    }
    name = path;
    owned = true;
    struct stat info;
    if (stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
        error = "cannot read " + path + ": it is a directory";
        return nullptr;
    }
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) error = "cannot open " + path + ": " + std::strerror(errno);
    return file;
}

std::unique_ptr<FrameSource> open_source(const Options& options, const ToolStreams& io,
                                         std::string& error) {
    switch (options.kind) {
        case InputKind::kDemo:
            std::fprintf(io.err, "%s\n", DemoScene::description().c_str());
            return std::make_unique<DemoScene>();
        case InputKind::kTiffList: {
            auto reader = std::make_unique<TiffListReader>(options.inputs);
            if (!reader->start(error)) return nullptr;
            return reader;
        }
        case InputKind::kRaw:
        case InputKind::kY4m:
            break;
    }
    std::string name;
    bool owned = false;
    std::FILE* file = open_input(options.inputs[0], io, name, owned, error);
    if (file == nullptr) return nullptr;
    if (options.kind == InputKind::kRaw) {
        return std::make_unique<RawReader>(file, name, owned, options.width, options.height,
                                           !options.nv12);
    }
    auto reader = std::make_unique<Y4mReader>(file, name, owned);
    if (!reader->start(error)) {
        if (error.find("not a YUV4MPEG2 stream") != std::string::npos) {
            error += "; raw NV21 frames need --size WxH";
        }
        return nullptr;
    }
    return reader;
}

// Sets the logging switch for the detector about to be initialised and puts
// the environment back afterwards.
class ScopedLogSwitch {
public:
    explicit ScopedLogSwitch(bool on) : on_(on) {
        if (!on_) return;
        const char* old = std::getenv(kLogProperty);
        had_old_ = old != nullptr;
        if (had_old_) old_ = old;
        setenv(kLogProperty, "1", 1);
    }
    ~ScopedLogSwitch() {
        if (!on_) return;
        if (had_old_) {
            setenv(kLogProperty, old_.c_str(), 1);
        } else {
            unsetenv(kLogProperty);
        }
    }
    ScopedLogSwitch(const ScopedLogSwitch&) = delete;
    ScopedLogSwitch& operator=(const ScopedLogSwitch&) = delete;

private:
    bool on_;
    bool had_old_ = false;
    std::string old_;
};

// True when path names an existing file that is also one of the inputs
// ("-" being standard input), which writing it would destroy.
bool is_an_input(const std::string& path, const Options& options, const ToolStreams& io) {
    struct stat target;
    if (stat(path.c_str(), &target) != 0) return false;
    for (const std::string& input : options.inputs) {
        struct stat source;
        const int got = input == "-" ? fstat(fileno(io.in), &source) : stat(input.c_str(), &source);
        if (got == 0 && source.st_dev == target.st_dev && source.st_ino == target.st_ino) return true;
    }
    return false;
}

void* initialise_detector(int width, int height, bool log) {
    ScopedLogSwitch log_switch(log);
    return MoloFinDetect_Initialize(nullptr, width, height, nullptr);
}

}  // namespace

int run_tool(int argc, const char* const* argv, const ToolStreams& io) {
    Options options;
    std::string error;
    if (!parse_options(argc, argv, options, error)) {
        return fail(io, kExitUsage, error + " (see --help)");
    }
    if (options.help) {
        std::fputs(usage_text().c_str(), io.out);
        return kExitOk;
    }
    if (!options.annotate_path.empty() && is_an_input(options.annotate_path, options, io)) {
        return fail(io, kExitUsage, "--annotate " + options.annotate_path + " would overwrite an input");
    }
    MetaTrack meta;
    if (!options.meta_path.empty() && !meta.load(options.meta_path, error)) {
        return fail(io, kExitBadInput, "--meta: " + error);
    }
    std::unique_ptr<FrameSource> source = open_source(options, io, error);
    if (!source) return fail(io, kExitBadInput, error);
    const int width = source->width();
    const int height = source->height();

    Y4mWriter annotated;
    if (!options.annotate_path.empty()) {
        int num = 0, den = 0;
        source->frame_rate(num, den);
        if (!annotated.open(options.annotate_path, width, height, num, den, error)) {
            return fail(io, kExitBadInput, "--annotate: " + error);
        }
    }
    PlaneDump dump;
    if (!options.dump_dir.empty() && !dump.open(options.dump_dir, error)) {
        return fail(io, kExitBadInput, error);
    }

    void* handle = initialise_detector(width, height, options.log);
    if (handle == nullptr) {
        return fail(io, kExitBadInput,
                    "the detector refuses a " + std::to_string(width) + "x" +
                        std::to_string(height) + " picture");
    }
    const Molo_FingerDetect& detector = *static_cast<Molo_FingerDetect*>(handle);

    ResultWriter results(io.out, options.json);
    results.begin();
    RunSummary summary;
    ProgressBar progress(io.err, source->expected_frames(),
                         !options.log && isatty(fileno(io.err)) == 1);
    Frame frame;
    std::vector<uint8_t> picture(options.annotate_path.empty() ? 0
                                                               : picture_bytes_420(width, height));
    std::string stop_reason;
    for (long n = 0;; ++n) {
        const ReadStatus status = source->next(frame, stop_reason);
        if (status == ReadStatus::kEnd) break;
        if (status == ReadStatus::kError) break;
        if (options.log) {
            // Marks where the detector's messages for this frame begin.
            std::fprintf(io.err, "[frame %ld]\n", n);
            std::fflush(io.err);
        }
        const CameraState camera = meta.at(n, options.camera);
        FrameResult r;
        r.frame = n;
        const auto start = std::chrono::steady_clock::now();
        r.result = MoloFinDetect_Execute(handle, frame.y.data(), frame.vu.data(),
                                         options.orientation, frame.stride, frame.ds_mode(),
                                         camera.gain, camera.color_temp, &r.row, &r.col);
        const auto stop = std::chrono::steady_clock::now();
        results.write(r);
        summary.add(n, r.result, std::chrono::duration<double, std::milli>(stop - start).count());
        if (!picture.empty()) {
            planar_420_from_frame(frame, picture.data());
            draw_decision(picture.data(), width, height, decision_state(r.result, detector),
                          detector, r.row, r.col);
            if (!annotated.write(picture.data(), stop_reason)) break;
        }
        if (!options.dump_dir.empty() && !dump.write(n, detector, stop_reason)) break;
        progress.update(n + 1);
    }
    progress.finish();
    MoloFinDetect_Finalize(handle, nullptr, 0);

    summary.print(io.err, width, height);
    if (!annotated.close(error) && stop_reason.empty()) stop_reason = "--annotate: " + error;
    if (std::fflush(io.out) != 0 || std::ferror(io.out)) {
        if (stop_reason.empty()) stop_reason = "cannot write the results";
    }
    if (!stop_reason.empty()) return fail(io, kExitBadInput, stop_reason);
    if (summary.frames() == 0) return fail(io, kExitBadInput, "the input holds no frames");
    return kExitOk;
}

}  // namespace fingerdetect
