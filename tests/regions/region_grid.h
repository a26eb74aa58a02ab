// Text pictures of working-grid planes for the region tests: '.' is 0, a
// digit its value.
#ifndef MOLO_TESTS_REGIONS_REGION_GRID_H
#define MOLO_TESTS_REGIONS_REGION_GRID_H

#include <initializer_list>
#include <string>
#include <vector>

#include "common/detector_fixture.h"

using Picture = std::vector<std::string>;

template <typename T>
void paint(ScopedDetector& d, T* plane, std::initializer_list<const char*> rows) {
    int r = 0;
    for (const char* row : rows) {
        for (int c = 0; row[c] != '\0'; ++c) plane[d.index(r, c)] = row[c] == '.' ? 0 : row[c] - '0';
        ++r;
    }
}

template <typename T>
Picture picture(ScopedDetector& d, const T* plane) {
    Picture rows(d->down_height, std::string(d->down_width, '.'));
    for (int r = 0; r < d->down_height; ++r) {
        for (int c = 0; c < d->down_width; ++c) {
            if (plane[d.index(r, c)] != 0) rows[r][c] = static_cast<char>('0' + plane[d.index(r, c)]);
        }
    }
    return rows;
}

template <typename T>
void fill_box(ScopedDetector& d, T* plane, int top, int left, int bottom, int right, T value) {
    for (int r = top; r <= bottom; ++r) {
        for (int c = left; c <= right; ++c) plane[d.index(r, c)] = value;
    }
}

#endif  // MOLO_TESTS_REGIONS_REGION_GRID_H
