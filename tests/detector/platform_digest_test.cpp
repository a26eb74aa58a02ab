// A fixed set of synthetic clips, run through the C interface with logging
// on, reduced to one digest of every result, position, message and working
// plane. The digest is committed next to this test, so any platform drift
// (char signedness, long width, floating-point contraction, alignment, a
// vector path that differs from the scalar one) shows up as a failure on the
// platform where it happens. Set MOLO_PRINT_DIGESTS=1 to print each clip's
// digest, to find which clip drifted or to record a deliberate change.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "common/log_capture.h"
#include "common/synthetic_frame.h"
#include "molo/c_api.h"
#include "molo/detector.h"
#include "prep/parallel_rows.h"

#ifndef MOLO_TEST_DATA_DIR
#error "MOLO_TEST_DATA_DIR must name the folder of the committed digests"
#endif

namespace {

// FNV-1a, 64 bits: byte order and word size do not enter it.
class Digest {
public:
    void bytes(const void* data, size_t n) {
        const auto* p = static_cast<const uint8_t*>(data);
        for (size_t i = 0; i < n; ++i) {
            hash_ ^= p[i];
            hash_ *= 0x100000001b3ull;
        }
    }
    void number(int64_t v) {
        for (int i = 0; i < 8; ++i) {
            const uint8_t b = static_cast<uint8_t>(static_cast<uint64_t>(v) >> (8 * i));
            bytes(&b, 1);
        }
    }
    void text(const std::string& s) {
        number(static_cast<int64_t>(s.size()));
        bytes(s.data(), s.size());
    }
    uint64_t value() const { return hash_; }

private:
    uint64_t hash_ = 0xcbf29ce484222325ull;
};

// Deterministic texture from integer arithmetic only.
uint32_t next(uint32_t& state) {
    state = state * 1664525u + 1013904223u;
    return state >> 8;
}

// The finger enters from `side` (-1 none, 0 left, 1 right) with a radius in
// working cells and the chroma pair (first, second); `texture` is the
// amplitude of the scene's luma texture.
struct Clip {
    const char* name;
    int width, height, stride, ds_mode, orientation;
    float gain;
    int cct, side, radius;
    uint8_t first, second;
    int texture;
};

// A textured scene; the finger is present on frames 2 to 5 of 8, growing by
// one cell per frame, so the clips pass through searching, held, reported
// and the finger leaving.
Nv21Frame make_frame(const Clip& c, int frame, uint32_t seed) {
    Nv21Frame f(c.width, c.height, 110, 128, 128, c.stride);
    uint32_t state = seed * 2654435761u + static_cast<uint32_t>(frame);
    for (int r = 0; r < c.height; ++r) {
        for (int x = 0; x < c.width; ++x) {
            const int wave = ((r / 16 + x / 24) & 1) * c.texture;
            const int noise = static_cast<int>(next(state) % 9) - 4;
            f.y[static_cast<size_t>(r) * c.stride + x] = static_cast<uint8_t>(90 + wave + noise);
        }
    }
    for (int r = 0; r < c.height / 2; ++r) {
        for (int x = 0; x + 1 < c.width; x += 2) {
            uint8_t* p = &f.vu[static_cast<size_t>(r) * c.stride + x];
            p[0] = static_cast<uint8_t>(120 + next(state) % 17);
            p[1] = static_cast<uint8_t>(120 + next(state) % 17);
        }
    }
    if (c.side >= 0 && frame >= 2 && frame <= 5) {
        // A finger is smooth: flat luma (with sensor noise) over its disc.
        const int radius = (c.radius + frame) * 8;
        const int centre_row = c.height / 16 * 8;
        for (int r = 0; r < c.height; ++r) {
            for (int x = 0; x < c.width; ++x) {
                const int dr = r - centre_row;
                const int dc = c.side == 0 ? x : c.width - 1 - x;
                if (dr * dr + dc * dc > radius * radius) continue;
                const int noise = static_cast<int>(next(state) % 5) - 2;
                f.y[static_cast<size_t>(r) * c.stride + x] = static_cast<uint8_t>(150 + noise);
            }
        }
        f.paint_half_disc(c.side, c.radius + frame, c.ds_mode == 1 ? c.first : c.second,
                          c.ds_mode == 1 ? c.second : c.first);
    }
    return f;
}

const std::vector<Clip>& clips() {
    static const std::vector<Clip> all{
        {"vga_left_tone0", 640, 480, 640, 1, 0, 2.0f, 5000, 0, 12, 147, 117, 30},
        {"vga_right_tone1_portrait", 640, 480, 640, 1, 1, 4.0f, 4000, 1, 12, 155, 110, 30},
        {"vga_left_tone2_low_light", 640, 480, 640, 1, 0, 16.0f, 3000, 0, 14, 165, 102, 12},
        {"vga_left_tone3_nv12", 640, 480, 640, 0, 0, 1.0f, 6500, 0, 12, 130, 131, 20},
        {"vga_no_finger_textured", 640, 480, 640, 1, 0, 2.0f, 5000, -1, 0, 0, 0, 60},
        {"hd_left_tone4", 1280, 720, 1280, 1, 0, 8.0f, 4500, 0, 20, 136, 126, 25},
        {"odd_size_padded_stride", 650, 490, 704, 1, 0, 2.0f, 5000, 0, 12, 147, 117, 30},
        {"qcif_tiny", 176, 144, 176, 1, 0, 2.0f, 5000, 0, 4, 147, 117, 10},
        {"working_16_wide", 128, 96, 128, 1, 0, 2.0f, 5000, 1, 3, 155, 110, 10},
    };
    return all;
}

struct ClipOutcome {
    uint64_t digest;
    int reports;
    size_t messages;
};

ClipOutcome run_clip(const Clip& c, uint32_t seed) {
    setenv("Molo_FingerDetection_enable_log", "1", 1);
    LogCapture log;
    void* handle = MoloFinDetect_Initialize(nullptr, c.width, c.height, nullptr);
    unsetenv("Molo_FingerDetection_enable_log");
    Digest digest;
    int reports = 0;
    auto* d = static_cast<Molo_FingerDetect*>(handle);
    for (int frame = 0; frame < 8; ++frame) {
        Nv21Frame f = make_frame(c, frame, seed);
        int row = -1;
        int col = -1;
        const int result = MoloFinDetect_Execute(handle, f.y_plane(), f.vu_plane(), c.orientation,
                                                 c.stride, c.ds_mode, c.gain, c.cct, &row, &col);
        reports += result == 1;
        digest.number(result);
        digest.number(row);
        digest.number(col);
        if (d != nullptr) {
            const size_t cells = static_cast<size_t>(d->down_width) * d->down_height;
            digest.bytes(d->down_y, cells);
            digest.bytes(d->down_vu, cells / 2);
            digest.bytes(d->skin_mask, cells);
            digest.bytes(d->finger_mask, cells);
            digest.bytes(d->edge_map, cells);
            for (size_t i = 0; i < cells; ++i) digest.number(d->label_map[i]);
            digest.number(d->have_detect);
            digest.number(d->db_index);
        }
    }
    MoloFinDetect_Finalize(handle, nullptr, 0);
    const auto messages = log.messages();
    for (const auto& m : messages) {
        digest.number(m.priority);
        digest.text(m.text);
    }
    return {digest.value(), reports, messages.size()};
}

std::string hex(uint64_t v) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(v));
    return text;
}

}  // namespace

// Serially and over four execution contexts with every row loop split, so
// the results cannot depend on the number of threads either.
TEST(PlatformDigest, SyntheticClipsMatchTheCommittedDigest) {
    std::ifstream committed(std::string(MOLO_TEST_DATA_DIR) + "/platform_digest.txt");
    std::string expected;
    committed >> expected;
    const bool print = std::getenv("MOLO_PRINT_DIGESTS") != nullptr;
    molo::set_parallel_work_threshold(0);
    for (int contexts : {1, 4}) {
        molo::set_execution_contexts(contexts);
        Digest all;
        for (const Clip& c : clips()) {
            const ClipOutcome outcome = run_clip(c, 7);
            all.number(static_cast<int64_t>(outcome.digest));
            if (print) {
                std::printf("%s %-28s %d reports, %zu messages\n", hex(outcome.digest).c_str(),
                            c.name, outcome.reports, outcome.messages);
            }
        }
        EXPECT_EQ(hex(all.value()), expected)
            << contexts << " contexts: results differ from the committed digest; rerun with "
            << "MOLO_PRINT_DIGESTS=1";
    }
    molo::set_execution_contexts(0);
    molo::set_parallel_work_threshold(-1);
}
