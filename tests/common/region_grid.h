// Planes of the working grid drawn and read back by the region and feature
// tests: from a function of (row, col), or from a text picture where '.' is 0
// and a digit its value.
#ifndef MOLO_TESTS_COMMON_REGION_GRID_H
#define MOLO_TESTS_COMMON_REGION_GRID_H

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "common/detector_fixture.h"

using Picture = std::vector<std::string>;

inline bool in_rect(int r, int c, int top, int left, int bottom, int right) {
    return r >= top && r <= bottom && c >= left && c <= right;
}

// plane = value(row, col) on every cell. The box becomes the extent of the
// non-zero cells, whose number is returned.
template <typename T, typename F>
int draw(ScopedDetector& d, T* plane, F value) {
    d->box_top = d->down_height, d->box_left = d->down_width, d->box_bottom = d->box_right = -1;
    int count = 0;
    for (int i = 0; i < d.cells(); ++i) {
        const int r = i / d->down_width, c = i % d->down_width;
        plane[i] = static_cast<T>(value(r, c));
        if (plane[i] == 0) continue;
        ++count;
        d->box_top = std::min(d->box_top, r), d->box_bottom = std::max(d->box_bottom, r);
        d->box_left = std::min(d->box_left, c), d->box_right = std::max(d->box_right, c);
    }
    return count;
}

// Writes the given rows only, as far as each reaches.
template <typename T>
void paint(ScopedDetector& d, T* plane, std::initializer_list<const char*> rows) {
    int r = 0;
    for (const char* row : rows) {
        for (int c = 0; row[c] != '\0'; ++c)
            plane[d.index(r, c)] = row[c] == '.' ? 0 : row[c] - '0';
        ++r;
    }
}

template <typename T>
Picture picture(ScopedDetector& d, const T* plane) {
    Picture rows(d->down_height, std::string(d->down_width, '.'));
    for (int i = 0; i < d.cells(); ++i) {
        const char mark = static_cast<char>('0' + plane[i]);
        if (plane[i] != 0) rows[i / d->down_width][i % d->down_width] = mark;
    }
    return rows;
}

#endif  // MOLO_TESTS_COMMON_REGION_GRID_H
