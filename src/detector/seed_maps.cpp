#include "detector/seed_maps.h"

#include <algorithm>

namespace molo {
namespace {

constexpr int kStrip = 10;

void fill(unsigned char* map, int w, int h, int row0, int row1, int col0, int col1,
          unsigned char value) {
    row0 = std::max(row0, 0);
    row1 = std::min(row1, h - 1);
    col0 = std::max(col0, 0);
    col1 = std::min(col1, w - 1);
    for (int r = row0; r <= row1; ++r) {
        for (int c = col0; c <= col1; ++c) map[r * w + c] = value;
    }
}

// Corner squares and middle band of one strip.
void fill_zones(unsigned char* map, int w, int h, int col0, int col1, unsigned char value) {
    const int q = h / 4;
    fill(map, w, h, 0, kStrip - 1, col0, col1, value);
    fill(map, w, h, h - kStrip, h - 1, col0, col1, value);
    fill(map, w, h, q, h - q - 1, col0, col1, value);
}

}  // namespace

void build_seed_maps(unsigned char* full, unsigned char* band, int w, int h) {
    const int right0 = w - kStrip;
    fill(full, w, h, 0, h - 1, 0, kStrip - 1, 1);
    fill_zones(full, w, h, right0, w - 1, 2);
    fill_zones(band, w, h, 0, kStrip - 1, 1);
    fill_zones(band, w, h, right0, w - 1, 2);
}

}  // namespace molo
