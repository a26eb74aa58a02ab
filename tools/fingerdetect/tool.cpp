#include "tool.h"

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
#include "input_file.h"
#include "meta_file.h"
#include "options.h"
#include "output_guard.h"
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
        if (is_directory(io.in)) {
            error = "standard input is a directory";
            return nullptr;
        }
        return io.in;
    }
    name = path;
    owned = true;
    return open_for_reading(path, error);
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
        case InputKind::kY4m: break;
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
        if (std::fflush(io.out) != 0 || std::ferror(io.out)) {
            return fail(io, kExitBadInput,
                        std::string("cannot write the usage: ") + std::strerror(errno));
        }
        return kExitOk;
    }
    const OutputGuard guard(options, io.in, io.out);
    if (!guard.check_command_line(options, error)) return fail(io, kExitUsage, error);
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
    if (!options.dump_dir.empty() && !dump.open(options.dump_dir, guard, error)) {
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
    RunSummary summary;
    ProgressBar progress(io.err, source->expected_frames(),
                         !options.log && isatty(fileno(io.err)) == 1);
    Frame frame;
    std::vector<uint8_t> picture;  // the annotated picture, sized at the first frame
    // Every write is checked: the first that fails sets stop_reason and ends
    // the run at its frame.
    std::string stop_reason;
    results.begin(stop_reason);
    for (long n = 0; stop_reason.empty(); ++n) {
        if (source->next(frame, stop_reason) != ReadStatus::kFrame) break;
        CameraState camera;
        if (!meta.at(n, options.camera, camera, stop_reason)) {
            stop_reason = "--meta: " + stop_reason;
            break;
        }
        if (options.log) {
            // Marks where the detector's messages for this frame begin.
            std::fprintf(io.err, "[frame %ld]\n", n);
            std::fflush(io.err);
        }
        FrameResult r;
        r.frame = n;
        const auto start = std::chrono::steady_clock::now();
        r.result = MoloFinDetect_Execute(handle, frame.y.data(), frame.vu.data(),
                                         options.orientation, frame.stride, frame.ds_mode(),
                                         camera.gain, camera.color_temp, &r.row, &r.col);
        const auto stop = std::chrono::steady_clock::now();
        summary.add(n, r.result, std::chrono::duration<double, std::milli>(stop - start).count());
        if (!results.write(r, stop_reason)) break;
        if (!options.annotate_path.empty()) {
            picture.resize(picture_bytes_420(width, height));
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
    if (!stop_reason.empty()) return fail(io, kExitBadInput, stop_reason);
    if (summary.frames() == 0) return fail(io, kExitBadInput, "the input holds no frames");
    return kExitOk;
}

}  // namespace fingerdetect
