// Differential check of the detector: runs many generated clips through the C
// interface with logging on and prints, for every clip, one line with a hash
// of everything the library left behind after each call: the result, the
// position, every message, every public field of the detector and every
// working plane and table. A second phase per clip calls the exported stage
// functions directly with boxes and masks a client might hand them.
//
// Two builds of the library that must agree (before and after a change, or
// one thread against several, see tools/differential_check.sh) print the
// same lines. The clips and their order depend only on the clip count and the
// seed, both arguments:
//   molo_differential [clips [seed]]
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "molo/c_api.h"
#include "molo/detector.h"
#include "support/log.h"

namespace {

// 64-bit multiply-xorshift over 8-byte words; compared only between runs on
// one machine, so byte order does not matter.
class Hash {
public:
    void bytes(const void* data, size_t n) {
        const auto* p = static_cast<const uint8_t*>(data);
        size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            uint64_t word;
            std::memcpy(&word, p + i, 8);
            mix(word);
        }
        uint64_t tail = n;
        for (; i < n; ++i) tail = (tail << 8) | p[i];
        mix(tail);
    }
    template <typename T>
    void value(const T& v) {
        bytes(&v, sizeof v);
    }
    void text(const std::string& s) { bytes(s.data(), s.size()); }
    uint64_t get() const { return h_; }

private:
    void mix(uint64_t word) {
        h_ = (h_ ^ word) * 0x9E3779B97F4A7C15ull;
        h_ ^= h_ >> 29;
    }
    uint64_t h_ = 0x6A09E667F3BCC909ull;
};

// Messages logged since the last call, as priority and text.
std::string g_messages;
int g_message_count = 0;

// How often each message occurred, numbers left out: shows on standard error
// which stages the clips reached.
std::map<std::string, int> g_tally;

void record(void*, int priority, const char* text) {
    std::string kind;
    for (const char* p = text; *p != '\0' && *p != '\n'; ++p) {
        if ((*p < '0' || *p > '9') && *p != '.' && *p != '-') kind += *p;
    }
    ++g_tally[kind];
    g_messages += static_cast<char>('0' + priority);
    g_messages += text;
    g_messages += '\x1f';
    ++g_message_count;
}

class Random {
public:
    explicit Random(uint32_t seed) : s_(seed * 2654435761u + 12345u) {}
    uint32_t next() {
        s_ ^= s_ << 13;
        s_ ^= s_ >> 17;
        s_ ^= s_ << 5;
        return s_;
    }
    // Uniform in [lo, hi].
    int in(int lo, int hi) {
        return lo + static_cast<int>(next() % static_cast<uint32_t>(hi - lo + 1));
    }
    bool chance(int percent) { return in(0, 99) < percent; }

private:
    uint32_t s_;
};

// Every field and buffer of the detector, sized as Initialize allocates them.
void hash_detector(Hash& h, const Molo_FingerDetect& d, const uint8_t* y, const uint8_t* vu) {
    const int w = d.down_width;
    const int ht = d.down_height;
    h.value(d.src_y == y);
    h.value(d.src_vu == vu);
    h.value(d.height);
    h.value(d.width);
    h.value(d.src_stride);
    h.value(d.down_height);
    h.value(d.down_width);
    h.value(d.frame_count);
    h.value(d.best_label);
    h.value(d.found_u);
    h.value(d.found_v);
    h.value(d.ref_u);
    h.value(d.ref_v);
    h.value(d.finger_found);
    h.value(d.detect_time != 0);  // a clock reading: only whether it was set
    h.value(d.have_detect);
    h.value(d.db_index);
    h.value(d.found_area);
    h.value(d.busy);
    h.value(d.min_area);
    h.value(d.max_area);
    h.value(d.skin_ratio);
    h.value(d.blur_kernel_sum);
    h.value(d.orientation);
    h.value(d.best_compactness);
    h.value(d.scan_row_end);
    h.value(d.scan_col_end);
    h.value(d.straight_run_best);
    h.value(d.straight_run_second);
    h.value(d.edge_count);
    h.value(d.box_top);
    h.value(d.box_left);
    h.value(d.box_bottom);
    h.value(d.box_right);
    h.value(d.light_class);
    h.value(d.line_dist_sum);
    h.value(d.line_run);
    h.value(d.line_longest_run);
    h.value(d.peak_votes);
    h.value(d.peak_angle);
    h.value(d.peak_rho);
    h.value(d.corner_row);
    h.value(d.corner_col);
    h.value(d.second_votes);
    h.value(d.second_angle);
    h.value(d.second_rho);
    h.value(d.second_longest_run);
    h.value(d.second_run);
    h.value(d.second_dist_sum);
    h.value(d.cross_row);
    h.value(d.cross_col);
    h.value(d.corner_line_dist);
    h.value(d.near_angles);
    h.value(d.finger_db);
    h.value(d.hough_diag);
    h.value(d.hough_rho_count);
    h.value(d.hough_angles);
    h.value(d.hough_acc_size);
    h.value(d.db_count);
    h.value(d.log_enabled);
    if (d.down_y == nullptr) return;  // finalised or never initialised
    const size_t cells = std::max<size_t>(static_cast<size_t>(w) * ht, 1);
    const size_t pairs = std::max<size_t>(static_cast<size_t>(ht / 2) * (w / 2) * 2, 2);
    h.bytes(d.down_y, cells + 1);
    h.bytes(d.down_vu, pairs + 1);
    h.bytes(d.skin_mask, cells + 1);
    h.bytes(d.seed_map_full, cells + 1);
    h.bytes(d.seed_map_band, cells + 1);
    h.bytes(d.region_queue, cells * sizeof(Pixel));
    h.bytes(d.label_map, (cells + w) * sizeof(unsigned int));
    h.bytes(d.grad_xx, cells * sizeof(int));
    h.bytes(d.grad_yy, cells * sizeof(int));
    h.bytes(d.grad_xy, cells * sizeof(int));
    h.bytes(d.color_dist, cells * sizeof(float));
    h.bytes(d.region_stats, std::max<size_t>(cells + 2, 256) * sizeof(RegionStat));
    h.bytes(d.finger_mask, cells + 1);
    h.bytes(d.edge_map, cells + 1);
    h.bytes(d.corner_response, cells * sizeof(int));
    h.bytes(d.shape_profile, static_cast<size_t>(std::max({w, ht, 1})) * sizeof(float));
    h.bytes(d.sin_table, 180 * sizeof(float));
    h.bytes(d.cos_table, 180 * sizeof(float));
    h.bytes(d.hough_acc, (static_cast<size_t>(d.hough_acc_size) + 180) * sizeof(int));
    for (int r = 0; r < 7; ++r) h.bytes(d.blur_kernel[r], 7 * sizeof(int));
}

struct Tone {
    uint8_t u;  // first byte of a working pair
    uint8_t v;  // second byte
};

// Near the centre of one colour entry (or off all of them).
Tone pick_tone(Random& rnd) {
    static const Tone kCentres[5] = {{147, 117}, {155, 110}, {165, 102}, {130, 131}, {136, 126}};
    if (rnd.chance(8))
        return {static_cast<uint8_t>(rnd.in(90, 200)), static_cast<uint8_t>(rnd.in(90, 200))};
    const Tone t = kCentres[rnd.in(0, 4)];
    const int spread = rnd.chance(70) ? 2 : 9;
    return {static_cast<uint8_t>(t.u + rnd.in(-spread, spread)),
            static_cast<uint8_t>(t.v + rnd.in(-spread, spread))};
}

struct ClipPlan {
    int width;
    int height;
    int stride;
    int ds_mode;
    int orientation;
    float gain;
    int cct;
    int background;  // 0 noise, 1 texture, 2 skin-heavy, 3 specks, 4 flat
    int shape;  // -1 none; 0 disc, 1 rectangle, 2 rectangle with hole, 3 wedge, 4 from top, 5 two
                // blobs
    int frames;
    uint32_t seed;
};

ClipPlan make_plan(Random& rnd, int index) {
    static const int kSizes[][2] = {{640, 480}, {1280, 720}, {1920, 1080}, {176, 144}, {320, 240},
                                    {16, 16},   {24, 40},    {650, 490},   {128, 96},  {8, 8},
                                    {17, 33},   {1000, 720}, {480, 640},   {720, 1280}};
    ClipPlan s{};
    const int pick = rnd.in(0, 19);
    if (pick < 14) {
        s.width = kSizes[pick][0];
        s.height = kSizes[pick][1];
    } else {
        s.width = rnd.in(1, 520);
        s.height = rnd.in(1, 400);
    }
    // Large frames are costly to generate: most clips stay small.
    if (s.width * s.height > 1000000 && index % 4 != 0) {
        s.width /= 2;
        s.height /= 2;
    }
    s.stride = s.width + (rnd.chance(40) ? rnd.in(1, 70) : 0);
    s.ds_mode = rnd.chance(10) ? 2 : rnd.in(0, 1);
    s.orientation = rnd.chance(3) ? 2 : rnd.in(0, 1);
    static const float kGains[] = {0.5f, 1.0f, 1.02f, 2.0f, 4.5f, 6.0f, 16.0f};
    static const int kTemps[] = {2500, 2999, 3000, 3500, 3899, 3900, 4500, 6500};
    s.gain = kGains[rnd.in(0, 6)];
    s.cct = kTemps[rnd.in(0, 7)];
    s.background = rnd.in(0, 9);
    if (s.background > 4) s.background = 1;
    s.shape = rnd.chance(15) ? -1 : rnd.in(0, 5);
    s.frames = rnd.in(3, 9);
    s.seed = rnd.next();
    return s;
}

struct Frame {
    int stride;
    std::vector<uint8_t> y;
    std::vector<uint8_t> vu;
};

// Paints working cell (r, c): luma over its 8 x 8 pixels with some noise.
void cell_luma(Frame& f, const ClipPlan& s, Random& rnd, int r, int c, int luma, int noise) {
    for (int dy = 0; dy < 8; ++dy) {
        const int y = r * 8 + dy;
        if (y >= s.height) return;
        for (int dx = 0; dx < 8; ++dx) {
            const int x = c * 8 + dx;
            if (x >= s.width) break;
            const int v = luma + (noise > 0 ? rnd.in(-noise, noise) : 0);
            f.y[static_cast<size_t>(y) * s.stride + x] =
                static_cast<uint8_t>(std::min(255, std::max(0, v)));
        }
    }
}

// Paints working chroma pair (pr, pc), which serves working cells rows
// 2pr, 2pr + 1 and columns 2pc, 2pc + 1 (16 x 16 frame pixels).
void pair_chroma(Frame& f, const ClipPlan& s, int pr, int pc, Tone t) {
    const bool in_order = s.ds_mode == 1;
    for (int dy = 0; dy < 8; ++dy) {
        const int y = pr * 8 + dy;
        if (y >= s.height / 2) return;
        for (int dx = 0; dx < 16; dx += 2) {
            const int x = pc * 16 + dx;
            if (x + 1 >= s.width) break;
            uint8_t* p = &f.vu[static_cast<size_t>(y) * s.stride + x];
            p[0] = in_order ? t.u : t.v;
            p[1] = in_order ? t.v : t.u;
        }
    }
}

Frame make_frame(const ClipPlan& s, int index, Tone tone, int flat_luma) {
    Random rnd(s.seed + static_cast<uint32_t>(index) * 7919u);
    Frame f{s.stride, std::vector<uint8_t>(static_cast<size_t>(s.stride) * s.height + 1),
            std::vector<uint8_t>(static_cast<size_t>(s.stride) * (s.height / 2) + 2)};
    const int rows = (s.height + 7) / 8;
    const int cols = (s.width + 7) / 8;
    if (s.background == 0) {
        for (auto& b : f.y) b = static_cast<uint8_t>(rnd.next() >> 24);
        for (auto& b : f.vu) b = static_cast<uint8_t>(rnd.next() >> 24);
    } else {
        const int period = rnd.in(2, 9);
        for (int r = 0; r < rows; ++r) {
            for (int c = 0; c < cols; ++c) {
                int luma = 100;
                Tone t{128, 128};
                switch (s.background) {
                    case 1:
                        luma = 70 + (((r / period) + (c / (period + 1))) & 1) * 60;
                        t = {static_cast<uint8_t>(rnd.in(110, 140)),
                             static_cast<uint8_t>(rnd.in(110, 140))};
                        break;
                    case 2:
                        luma = 120 + ((r * 3 + c) % 7);
                        t = rnd.chance(45) ? tone
                                           : Tone{static_cast<uint8_t>(rnd.in(115, 140)), 125};
                        break;
                    case 3: {
                        static const int kDiagonal[4] = {0, 50, 100, 50};
                        luma = kDiagonal[(r + c) % 4];
                        t = c < 10 && rnd.chance(90) ? tone : Tone{100, 160};
                        break;
                    }
                    default: luma = 90; t = {128, 128};
                }
                cell_luma(f, s, rnd, r, c, luma, s.background == 3 ? 0 : 3);
                if (r % 2 == 0 && c % 2 == 0) pair_chroma(f, s, r / 2, c / 2, t);
            }
        }
    }
    // The shape grows over the clip, is absent on some frames and leaves at the end.
    const bool present = s.shape >= 0 && index != 0 && index < s.frames - 1;
    if (!present) return f;
    const int grow = index;
    const int centre = rows / 2 + (static_cast<int>(s.seed % 5) - 2);
    const int side = s.orientation == 1 ? 1 : 0;
    auto paint = [&](int r, int c, Tone t, int luma) {
        if (r < 0 || r >= rows || c < 0 || c >= cols) return;
        const int cc = side == 0 ? c : cols - 1 - c;
        cell_luma(f, s, rnd, r, cc, luma, 2);
        pair_chroma(f, s, r / 2, cc / 2, t);
    };
    const int size = std::max(2, rows / 4 + grow);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            const int dr = r - centre;
            bool in = false;
            bool hole = false;
            switch (s.shape) {
                case 0: in = dr * dr + c * c <= size * size; break;
                case 1: in = std::abs(dr) <= size / 2 + 1 && c <= size; break;
                case 2:
                    in = std::abs(dr) <= size / 2 + 2 && c <= size + 2;
                    hole = std::abs(dr) <= 1 && c >= size / 2 && c <= size / 2 + 2;
                    break;
                case 3: in = c <= size && std::abs(dr) <= (size - c) / 2 + 1; break;
                case 4: in = r <= size && std::abs(c - cols / 3) <= size / 2; break;
                default:
                    in = (dr * dr + c * c <= size * size / 2) ||
                         (r >= rows - size / 2 && c <= size / 2);
                    break;
            }
            if (hole) {
                paint(r, c, Tone{100, 160}, 60);
            } else if (in) {
                paint(r, c, tone, flat_luma);
            }
        }
    }
    return f;
}

// Stage functions called directly, as a client may: a random mask with a
// box that may be larger than the mask's own, then every stage.
void direct_calls(Molo_FingerDetect& d, Random& rnd, Hash& h) {
    const int w = d.down_width;
    const int ht = d.down_height;
    if (w < 1 || ht < 1) return;
    for (int round = 0; round < 3; ++round) {
        const int top = rnd.in(0, ht - 1);
        const int left = rnd.in(0, w - 1);
        const int bottom = rnd.in(top, ht - 1);
        const int right = rnd.in(left, w - 1);
        const int density = rnd.in(30, 100);
        std::memset(d.finger_mask, 0, static_cast<size_t>(w) * ht);
        for (int r = top; r <= bottom; ++r) {
            for (int c = left; c <= right; ++c)
                d.finger_mask[r * w + c] = rnd.chance(density) ? 1 : 0;
        }
        // Sometimes a box that reaches beyond the mask's cells.
        d.box_top = rnd.chance(30) ? std::max(0, top - rnd.in(0, 3)) : top;
        d.box_left = rnd.chance(30) ? std::max(0, left - rnd.in(0, 3)) : left;
        d.box_bottom = rnd.chance(30) ? std::min(ht - 1, bottom + rnd.in(0, 3)) : bottom;
        d.box_right = rnd.chance(30) ? std::min(w - 1, right + rnd.in(0, 3)) : right;
        d.best_label = 1;
        d.orientation = rnd.in(0, 1);
        h.value(d.HarrisHough());
        hash_detector(h, d, nullptr, nullptr);
        // The outline and corner stages on their own, over an edge map the
        // client wrote.
        for (int i = 0; i < w * ht; ++i) d.edge_map[i] = rnd.chance(20) ? 1 : 0;
        d.edge_count = 0;
        for (int i = 0; i < w * ht; ++i) d.edge_count += d.edge_map[i];
        if (d.edge_count > 0) h.value(d.HoughLine());
        h.value(d.HarrisCorner());
        d.FillInGap();
        h.value(d.CheckShape());
        int position = 0;
        h.value(d.GetBorderLength(1, &position));
        h.value(position);
        hash_detector(h, d, nullptr, nullptr);
    }
}

std::string describe(const ClipPlan& s) {
    char text[160];
    std::snprintf(text, sizeof text, "%dx%d/%d ds%d o%d g%.2f t%d bg%d shape%d f%d", s.width,
                  s.height, s.stride, s.ds_mode, s.orientation, static_cast<double>(s.gain), s.cct,
                  s.background, s.shape, s.frames);
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    const int clips = argc > 1 ? std::atoi(argv[1]) : 400;
    const uint32_t seed = argc > 2 ? static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 10)) : 1;
    setenv("Molo_FingerDetection_enable_log", "1", 1);
    molo::set_log_hook(&record, nullptr);
    Random rnd(seed);
    for (int k = 0; k < clips; ++k) {
        const ClipPlan s = make_plan(rnd, k);
        Random clip_rnd(s.seed);
        const Tone tone = pick_tone(clip_rnd);
        const int flat_luma = clip_rnd.chance(10) ? clip_rnd.in(5, 24) : clip_rnd.in(40, 200);
        g_messages.clear();
        g_message_count = 0;
        void* handle = MoloFinDetect_Initialize(nullptr, s.width, s.height, nullptr);
        Hash h;
        h.text(g_messages);
        int reports = 0;
        int messages = g_message_count;
        auto* d = static_cast<Molo_FingerDetect*>(handle);
        for (int i = 0; i < s.frames; ++i) {
            Frame f = make_frame(s, i, tone, flat_luma);
            g_messages.clear();
            int row = -1;
            int col = -1;
            const int result =
                MoloFinDetect_Execute(handle, f.y.data(), f.vu.data(), s.orientation, s.stride,
                                      s.ds_mode, s.gain, s.cct, &row, &col);
            reports += result == 1;
            h.value(result);
            h.value(row);
            h.value(col);
            h.text(g_messages);
            if (d != nullptr) hash_detector(h, *d, f.y.data(), f.vu.data());
        }
        messages = g_message_count - messages;
        if (d != nullptr) {
            h.bytes(d->full_y_buf, static_cast<size_t>(d->width) * d->height + 1);
            h.bytes(d->full_vu_buf, static_cast<size_t>(d->width) * d->height / 2 + 1);
            d->busy = 0;
            direct_calls(*d, clip_rnd, h);
        }
        MoloFinDetect_Finalize(handle, nullptr, 0);
        std::printf("%04d %016llx %s reports=%d messages=%d\n", k,
                    static_cast<unsigned long long>(h.get()), describe(s).c_str(), reports,
                    messages);
    }
    molo::set_log_hook(nullptr, nullptr);
    for (const auto& [kind, count] : g_tally)
        std::fprintf(stderr, "%8d  %s\n", count, kind.c_str());
    return 0;
}
