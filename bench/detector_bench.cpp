// Per-frame cost of the detector through its C interface, one case per kind
// of frame a camera hands it, at 640x480, 1280x720 and 1920x1080. Every case
// also times a memcpy of its frame bytes in the same process (counter
// memcpy_us): no pass over the frame can beat that copy by much, so the ratio
// to it compares across machines and cache placements. bench/run.sh runs
// every case in fresh processes and prints medians; the thread count comes
// from MOLO_THREADS. With MOLO_BENCH_CLOCK=cpu the calls and the copies are
// timed by the process's CPU clock instead of the wall clock: on a machine
// busy with other work that leaves out the time the process waited for a
// core, which is only meaningful with one thread (MOLO_THREADS=1).
//
//   molo_bench [Google Benchmark flags]   time the cases
//   molo_bench --describe [REGEX]         one pass of each case with the
//                                         detector's log: what the timed call does
//   molo_bench --instructions CASE [N]    N passes of CASE for callgrind, whose
//                                         collection is on only inside the timed
//                                         MoloFinDetect_Execute calls
//                                         (bench/count_instructions.sh)
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <regex.h>
#include <string>
#include <vector>

#include "MoloFingerDetect.h"
#include "bench_scenes.h"
#include "support/log.h"

#if defined(__has_include)
#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#define MOLO_BENCH_CALLGRIND 1
#endif
#endif
#ifndef MOLO_BENCH_CALLGRIND
#define MOLO_BENCH_CALLGRIND 0
#define CALLGRIND_TOGGLE_COLLECT
#endif

#ifndef MOLO_BENCH_PHOTO_DIR
#define MOLO_BENCH_PHOTO_DIR "photos"
#endif

namespace {

using bench::CameraFrame;

// Seconds on the clock the run measures with (see MOLO_BENCH_CLOCK above).
double now() {
    static const bool cpu = [] {
        const char* env = std::getenv("MOLO_BENCH_CLOCK");
        return env != nullptr && std::strcmp(env, "cpu") == 0;
    }();
    if (cpu) {
        timespec t{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// One call of the detector in a case's sequence; only timed calls are
// measured, the others bring the detector into the state the timed call
// starts from.
struct Step {
    int frame;
    bool timed;
};

// What every timed call of a case must do, checked once before timing; -1
// leaves a figure open.
struct Expect {
    int result = -1;
    int held_after = -1;  // have_detect after the call
    int crossing = -1;    // 1: the line-crossing search ran, 0: it did not
    int too_many = -1;    // colour entries turned away for growing too many regions
};

struct Scene {
    std::vector<Nv21Frame> frames;
    std::vector<Step> setup;  // run once, untimed
    std::vector<Step> cycle;  // repeated
    int orientation = 0;
    float gain = 1.0f;  // 1.0 at 5000 K: the light class that tries all five colour entries
    int kelvin = 5000;
    Expect expect;
    // Whole-queue clears a timed call makes (one per region growth), timed
    // alone in the same process as the floor of the case (counter clears_us).
    int queue_clears = 0;
};

struct CaseDef {
    std::string name;
    std::function<Scene(int, int)> build;
    std::vector<std::pair<int, int>> sizes;
    std::string photo;  // photo the case needs, if any
};

const std::vector<std::pair<int, int>> kSizes = {{640, 480}, {1280, 720}, {1920, 1080}};

std::string photo_dir() {
    const char* env = std::getenv("MOLO_BENCH_PHOTOS");
    return env != nullptr && *env != '\0' ? env : MOLO_BENCH_PHOTO_DIR;
}

Nv21Frame photo(const std::string& name, int width, int height) {
    Nv21Frame f(width, height, 0, 0, 0);
    bench::load_photo(photo_dir(), name, width, height, f);
    return f;
}

// A searching frame timed on every call.
Scene searching(Nv21Frame frame, int orientation = 0) {
    Scene s;
    s.frames.push_back(std::move(frame));
    s.cycle = {{0, true}};
    s.orientation = orientation;
    return s;
}

// A finger held at the edge, its size changing slightly from frame to frame;
// every frame runs once with the frozen colour entry and is reported.
Scene tracking(const std::vector<int>& growth, std::function<Nv21Frame(int)> frame_with_growth,
               int crossing) {
    Scene s;
    for (int grow : growth) s.frames.push_back(frame_with_growth(grow));
    s.setup = {{0, false}, {1, false}};
    for (size_t k = 0; k < growth.size(); ++k)
        s.cycle.push_back({static_cast<int>((k + 2) % growth.size()), true});
    s.expect.result = 1;
    s.expect.crossing = crossing;
    return s;
}

// A finger over `f`: a round-tipped band of half-width `half` rows (as a
// share of the working rows, plus `grow` cells) whose axis leaves the left
// edge at `row` (a share of the rows) at `degrees` from the row direction and
// runs `length` (a share of the columns) before its tip.
struct Finger {
    float row, degrees, length, half;
};

Nv21Frame finger_over(Nv21Frame f, const Finger& finger, int grow) {
    const float rows = static_cast<float>(f.height / 8);
    const float cols = static_cast<float>(f.width / 8);
    bench::paint_shape(f,
                       bench::Capsule{rows * finger.row, 0.0f, finger.degrees, cols * finger.length,
                                      rows * finger.half + static_cast<float>(grow)},
                       150, bench::kFinger.first, bench::kFinger.second);
    return f;
}

// A fingertip pressed on the lens from the left edge: a half disc, whose
// round outline has no second line.
constexpr Finger kFlatFinger{0.55f, 0.0f, 0.0f, 0.25f};
const std::vector<int> kFlatGrowth = {-1, 0, 1, 0};

// A finger reaching in from the top-left corner at a slant: its straight
// sides and the frame's corner give the outline a second line, so the
// line-crossing search runs. Which sizes of it do depends on how its cells
// fall on the working grid, so the growth steps are chosen per frame size.
constexpr Finger kSlantFinger{0.0f, 30.0f, 0.1f, 0.14f};
std::vector<int> slant_growth(int width) {
    if (width == 640) return {1, 3};
    if (width == 1280) return {0, 1};
    return {0, 2};
}

std::vector<CaseDef> case_defs() {
    std::vector<CaseDef> defs;
    // A cool-toned wall: no pixel matches a finger tone.
    defs.push_back({"Cheap",
                    [](int w, int h) { return searching(bench::plain_scene(w, h, 118, 140)); },
                    kSizes, ""});
    // A grey wall: the two pale entries find skin everywhere.
    defs.push_back(
        {"Grey", [](int w, int h) { return searching(bench::plain_scene(w, h)); }, kSizes, ""});
    // Synthetic texture, walls and a warm patch: a few small regions grown.
    defs.push_back({"Texture", [](int w, int h) { return searching(bench::natural_scene(w, h)); },
                    kSizes, ""});
    // Photos, the finger expected from the left (o0) and from the right (o1).
    for (const char* name : {"coffee", "chelsea", "astronaut", "rocket"}) {
        for (int orientation : {0, 1}) {
            defs.push_back({std::string("Photo_") + name + "_o" + std::to_string(orientation),
                            [name, orientation](int w, int h) {
                                // A grey frame before each photo keeps every timed
                                // call a searching one, also where the photo holds a
                                // candidate (a warm, round edge can pass every test).
                                Scene s;
                                s.frames.push_back(bench::plain_scene(w, h));
                                s.frames.push_back(photo(name, w, h));
                                s.cycle = {{0, false}, {1, true}};
                                s.orientation = orientation;
                                return s;
                            },
                            kSizes, name});
        }
    }
    // Large skin-coloured areas: a fingertip at the left edge is chosen, and
    // a face-sized area of the same tone in the middle of the frame makes its
    // colour too common for a finger.
    defs.push_back({"SkinHeavy",
                    [](int w, int h) {
                        Nv21Frame f = finger_over(bench::natural_scene(w, h), kFlatFinger, 0);
                        const float rows = static_cast<float>(h / 8);
                        const float cols = static_cast<float>(w / 8);
                        bench::paint_shape(
                            f,
                            [=](float r, float c) {
                                const float dr = (r - rows * 0.45f) / (rows * 0.32f);
                                const float dc = (c - cols * 0.62f) / (cols * 0.2f);
                                return dr * dr + dc * dc <= 1.0f;
                            },
                            120, bench::kFinger.first, bench::kFinger.second);
                        Scene s = searching(std::move(f));
                        s.expect.held_after = 0;
                        return s;
                    },
                    kSizes, ""});
    // A finger held at the left edge over synthetic texture, its outline
    // too round for a second line: the line-crossing search does not run.
    defs.push_back({"Tracking",
                    [](int w, int h) {
                        const Nv21Frame background = bench::natural_scene(w, h);
                        return tracking(
                            kFlatGrowth,
                            [&](int g) { return finger_over(background, kFlatFinger, g); }, 0);
                    },
                    kSizes, ""});
    // A finger entering at a slant, whose outline has a second line: the
    // line-crossing search runs on every frame.
    defs.push_back({"TrackingLine",
                    [](int w, int h) {
                        const Nv21Frame background = bench::natural_scene(w, h);
                        return tracking(
                            slant_growth(w),
                            [&](int g) { return finger_over(background, kSlantFinger, g); }, 1);
                    },
                    kSizes, ""});
    // The tracking finger over a photo.
    defs.push_back({"PhotoFinger_coffee",
                    [](int w, int h) {
                        const Nv21Frame background = photo("coffee", w, h);
                        return tracking(
                            kFlatGrowth,
                            [&](int g) { return finger_over(background, kFlatFinger, g); }, -1);
                    },
                    kSizes, "coffee"});
    // A searching frame whose candidate is held: a warm, round-tipped object
    // at the corner (the first frame of a finger, or anything of its colour
    // and shape) passes every test, the corner-and-line verification with its
    // line-crossing search included. A grey frame before each timed call
    // turns the detector back to searching.
    defs.push_back({"Held",
                    [](int w, int h) {
                        Scene s;
                        s.frames.push_back(bench::plain_scene(w, h));
                        s.frames.push_back(finger_over(bench::natural_scene(w, h), kSlantFinger,
                                                       slant_growth(w)[0]));
                        s.cycle = {{0, false}, {1, true}};
                        s.expect.result = 0;
                        s.expect.held_after = 1;
                        s.expect.crossing = 1;
                        return s;
                    },
                    kSizes, ""});
    // The most regions a frame can grow: every warm colour entry finds at
    // least 254 one-cell regions in the seed strip, so each grows 254 (every
    // growth clearing the whole region queue) and is turned away at the last.
    defs.push_back({"Worst3",
                    [](int w, int h) {
                        Nv21Frame f(w, h, 0, 100, 160);
                        bench::paint_specks(f, 0, h / 16, bench::kWarm);
                        Scene s = searching(std::move(f));
                        s.expect.too_many = 3;
                        s.queue_clears = 3 * 254;
                        return s;
                    },
                    kSizes, ""});
    // The same for all five entries: pale specks for the two pale entries in
    // the middle band (the only seed rows of the pale entry that seeds from
    // bands), warm specks above and below it. The strip is 10 cells wide, so
    // it holds 5 isolated cells per row: 2 x 254 of them need at least 102
    // working rows, which only the largest frame has.
    defs.push_back({"Worst5",
                    [](int w, int h) {
                        Nv21Frame f(w, h, 0, 100, 160);
                        const int pair_rows = h / 16;
                        const int band_first = (h / 8 / 4 + 1) / 2;
                        const int band_end = (h / 8 - h / 8 / 4) / 2;
                        bench::paint_specks(f, 0, band_first, bench::kWarm);
                        bench::paint_specks(f, band_end, pair_rows, bench::kWarm);
                        for (int pr = band_first; pr < band_end; ++pr) {
                            for (int pair = 0; pair < 5; ++pair)
                                f.set_pair(pr, pair, bench::kPale.first, bench::kPale.second);
                        }
                        Scene s = searching(std::move(f));
                        s.expect.too_many = 5;
                        s.queue_clears = 5 * 254;
                        return s;
                    },
                    {{1920, 1080}},
                    ""});
    return defs;
}

// Runs a scene through one detector handle, step by step.
class Runner {
public:
    Runner(const Scene& scene, int width, int height)
        : scene_(scene), fd_(MoloFinDetect_Initialize(nullptr, width, height, nullptr)) {
        for (const Nv21Frame& f : scene.frames) frames_.push_back(std::make_unique<CameraFrame>(f));
        for (const Step& s : scene.setup) call(s.frame);
        timed_per_cycle_ = static_cast<int>(std::count_if(scene.cycle.begin(), scene.cycle.end(),
                                                          [](const Step& s) { return s.timed; }));
    }
    ~Runner() { MoloFinDetect_Finalize(fd_, nullptr, 0); }
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;

    int call(int frame) {
        CameraFrame& f = *frames_[static_cast<size_t>(frame)];
        return MoloFinDetect_Execute(fd_, f.y_plane(), f.vu_plane(), scene_.orientation, f.stride,
                                     1, scene_.gain, scene_.kelvin, &row_, &col_);
    }

    // Runs the untimed steps up to the next timed one and returns that step's frame.
    int next_timed() {
        for (;;) {
            const Step s = scene_.cycle[next_];
            next_ = (next_ + 1) % scene_.cycle.size();
            if (s.timed) return s.frame;
            call(s.frame);
        }
    }

    // The next timed call, in seconds; with `collect`, callgrind counts it alone.
    double timed(bool collect) {
        const int frame = next_timed();
        const double start = now();
        if (collect) CALLGRIND_TOGGLE_COLLECT;
        benchmark::DoNotOptimize(call(frame));
        if (collect) CALLGRIND_TOGGLE_COLLECT;
        return now() - start;
    }

    int timed_per_cycle() const { return timed_per_cycle_; }
    Molo_FingerDetect& detector() { return *static_cast<Molo_FingerDetect*>(fd_); }

private:
    const Scene& scene_;
    void* fd_;
    std::vector<std::unique_ptr<CameraFrame>> frames_;
    size_t next_ = 0;
    int timed_per_cycle_ = 0;
    int row_ = 0;
    int col_ = 0;
};

void collect_message(void* context, int, const char* text) {
    static_cast<std::vector<std::string>*>(context)->push_back(text);
}

// One pass over the cycle with the detector's log on; checks every timed call
// against the scene's expectations. Returns what went wrong, empty when
// nothing did; with `print`, tells what each timed call did.
std::string check(Runner& run, const Scene& scene, bool print) {
    std::vector<std::string> messages;
    molo::set_log_hook(&collect_message, &messages);
    Molo_FingerDetect& d = run.detector();
    d.log_enabled = 1;
    std::string fault;
    for (int k = 0; k < run.timed_per_cycle(); ++k) {
        const int frame = run.next_timed();
        messages.clear();
        d.corner_line_dist = -1.0f;  // left alone unless the corner-and-line check runs
        const int result = run.call(frame);
        const bool crossing = d.corner_line_dist != -1.0f && d.corner_line_dist != 100.0f;
        const int too_many = static_cast<int>(
            std::count_if(messages.begin(), messages.end(), [](const std::string& m) {
                return m.find("too many skin tone area") != std::string::npos;
            }));
        if (print) {
            std::printf(
                "  frame %d: result %d, have_detect %d, entry %d, line-crossing search %s\n", frame,
                result, d.have_detect, d.db_index, crossing ? "ran" : "not run");
            for (const std::string& m : messages) std::printf("    %s", m.c_str());
        }
        const Expect& e = scene.expect;
        if (e.result >= 0 && result != e.result) fault = "result " + std::to_string(result);
        if (e.held_after >= 0 && d.have_detect != e.held_after)
            fault = "have_detect " + std::to_string(d.have_detect);
        if (e.crossing >= 0 && crossing != (e.crossing == 1))
            fault = crossing ? "the line-crossing search ran" : "no line-crossing search";
        if (e.too_many >= 0 && too_many != e.too_many)
            fault = std::to_string(too_many) + " entries grew too many regions";
    }
    d.log_enabled = 0;
    molo::set_log_hook(nullptr, nullptr);
    return fault.empty() ? fault : "the scene no longer does what it stands for: " + fault;
}

// Median time of one memcpy of `bytes` between page-aligned buffers, in
// microseconds, over blocks of copies.
double memcpy_us(size_t bytes) {
    bench::PageAligned from(bytes);
    bench::PageAligned to(bytes);
    std::memset(from.data(), 7, bytes);
    std::memset(to.data(), 0, bytes);
    std::vector<double> blocks;
    constexpr int kCopies = 16;
    for (int b = 0; b < 16; ++b) {
        const double start = now();
        for (int i = 0; i < kCopies; ++i) {
            std::memcpy(to.data(), from.data(), bytes);
            benchmark::ClobberMemory();
        }
        if (b > 0) blocks.push_back((now() - start) * 1e6 / kCopies);
    }
    std::sort(blocks.begin(), blocks.end());
    return blocks[blocks.size() / 2];
}

// Median time of `count` clears of the detector's region queue, in
// microseconds: what growing `count` regions costs at the least.
double queue_clears_us(Molo_FingerDetect& d, int count) {
    const size_t bytes = static_cast<size_t>(d.down_width) * d.down_height * sizeof(Pixel);
    bench::PageAligned queue(bytes);
    std::vector<double> rounds;
    for (int k = 0; k < 8; ++k) {
        const double start = now();
        for (int i = 0; i < count; ++i) {
            std::memset(queue.data(), 0, bytes);
            benchmark::ClobberMemory();
        }
        if (k > 0) rounds.push_back((now() - start) * 1e6);
    }
    std::sort(rounds.begin(), rounds.end());
    return rounds[rounds.size() / 2];
}

size_t frame_bytes(int width, int height) { return static_cast<size_t>(width) * height * 3 / 2; }

void run_case(benchmark::State& state, const CaseDef& def, int width, int height) {
    const Scene scene = def.build(width, height);
    Runner run(scene, width, height);
    const std::string fault = check(run, scene, false);
    if (!fault.empty()) {
        state.SkipWithError(fault.c_str());
        return;
    }
    for (auto _ : state) state.SetIterationTime(run.timed(false));
    state.counters["memcpy_us"] = memcpy_us(frame_bytes(width, height));
    if (scene.queue_clears > 0)
        state.counters["clears_us"] = queue_clears_us(run.detector(), scene.queue_clears);
}

// The downsampling stage alone, on the synthetic texture.
void run_downsampling(benchmark::State& state, int width, int height) {
    CameraFrame frame(bench::natural_scene(width, height));
    Molo_FingerDetect d;
    d.Initialize(frame.width, frame.height, nullptr);
    d.src_y = frame.y_plane();
    d.src_vu = frame.vu_plane();
    for (auto _ : state) {
        const double start = now();
        d.DownSampling(frame.stride, 1);
        benchmark::ClobberMemory();
        state.SetIterationTime(now() - start);
    }
    d.Finalize(nullptr, 0);
    state.counters["memcpy_us"] = memcpy_us(frame_bytes(width, height));
}

std::string case_name(const std::string& name, int width, int height) {
    return name + "/" + std::to_string(width) + "x" + std::to_string(height);
}

bool photo_present(const std::string& name, int width, int height) {
    Nv21Frame f(8, 8, 0, 0, 0);
    return bench::load_photo(photo_dir(), name, width, height, f);
}

// Every case that can be built here, by full name.
struct Instance {
    std::string name;
    const CaseDef* def;
    int width;
    int height;
};

std::vector<Instance> instances(const std::vector<CaseDef>& defs) {
    std::vector<Instance> out;
    bool told = false;
    for (const CaseDef& def : defs) {
        for (const auto& [w, h] : def.sizes) {
            if (!def.photo.empty() && !photo_present(def.photo, w, h)) {
                if (!told) {
                    std::fprintf(
                        stderr,
                        "molo_bench: no photo frames in %s, photo cases skipped (they are made at build "
                        "time from python3-skimage's photos with python3-pil)\n",
                        photo_dir().c_str());
                    told = true;
                }
                continue;
            }
            out.push_back({case_name(def.name, w, h), &def, w, h});
        }
    }
    return out;
}

int describe(const std::vector<Instance>& all, const char* pattern) {
    // A POSIX extended expression, as --benchmark_filter takes (GCC 12's
    // std::regex trips its own uninitialised-use warning under the sanitizers).
    regex_t filter;
    if (regcomp(&filter, pattern != nullptr ? pattern : ".", REG_EXTENDED | REG_NOSUB) != 0) {
        std::fprintf(stderr, "molo_bench: bad expression %s\n", pattern);
        return 2;
    }
    int faults = 0;
    for (const Instance& in : all) {
        if (regexec(&filter, in.name.c_str(), 0, nullptr, 0) != 0) continue;
        std::printf("%s\n", in.name.c_str());
        const Scene scene = in.def->build(in.width, in.height);
        Runner run(scene, in.width, in.height);
        const std::string fault = check(run, scene, true);
        if (!fault.empty()) {
            std::printf("  FAULT: %s\n", fault.c_str());
            ++faults;
        }
    }
    regfree(&filter);
    return faults == 0 ? 0 : 1;
}

int count_instructions(const std::vector<Instance>& all, std::string name, int passes) {
    for (const char* suffix : {"/manual_time"}) {
        const size_t at = name.rfind(suffix);
        if (at != std::string::npos && at + std::strlen(suffix) == name.size()) name.erase(at);
    }
    if (!MOLO_BENCH_CALLGRIND) {
        std::fprintf(stderr, "molo_bench: built without valgrind/callgrind.h (Debian: valgrind)\n");
        return 2;
    }
    for (const Instance& in : all) {
        if (in.name != name) continue;
        const Scene scene = in.def->build(in.width, in.height);
        Runner run(scene, in.width, in.height);
        // One uncounted pass brings the handle to its steady state.
        for (int k = 0; k < run.timed_per_cycle(); ++k) run.timed(false);
        const int calls = passes * run.timed_per_cycle();
        for (int k = 0; k < calls; ++k) run.timed(true);
        std::printf("%s calls %d\n", name.c_str(), calls);
        return 0;
    }
    std::fprintf(stderr, "molo_bench: no case %s\n", name.c_str());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    static const std::vector<CaseDef> defs = case_defs();
    static const std::vector<Instance> all = instances(defs);
    if (argc >= 2 && std::strcmp(argv[1], "--describe") == 0)
        return describe(all, argc >= 3 ? argv[2] : nullptr);
    if (argc >= 3 && std::strcmp(argv[1], "--instructions") == 0) {
        return count_instructions(all, argv[2], argc >= 4 ? std::max(1, std::atoi(argv[3])) : 2);
    }
    for (const auto& [w, h] : kSizes) {
        benchmark::RegisterBenchmark(
            case_name("DownSampling", w, h).c_str(),
            [w = w, h = h](benchmark::State& s) { run_downsampling(s, w, h); })
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
    for (const Instance& in : all) {
        benchmark::RegisterBenchmark(
            in.name.c_str(),
            [&in](benchmark::State& s) { run_case(s, *in.def, in.width, in.height); })
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
