// Builds TIFF files byte by byte, in either byte order, with any entries in
// any order, so that tests can make both well-formed files the library's
// writer would never produce and every kind of broken one; and moves images
// through the library's writer in memory.
//
// Layout: the 8-byte header, the directory at offset 8 (entry count, the
// entries as given, the next-directory offset), the long values of the
// entries in entry order, then the strips in the order `storage` names.
// Sections therefore lie at increasing offsets and a file can be cut inside
// any of them. A StripOffsets or StripByteCounts entry with no values is
// filled in with the strips' real offsets or sizes.
#ifndef MOLO_TESTS_DEBUG_TIFF_BUILDER_H
#define MOLO_TESTS_DEBUG_TIFF_BUILDER_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "molo/debug.h"

// Channel k of palette entry i in the test files: (i, 255 - i, 7 i mod 256).
inline uint8_t palette_entry(int i, int k) {
    return static_cast<uint8_t>(k == 0 ? i : k == 1 ? 255 - i : (i * 7) & 255);
}

struct TiffEntry {
    uint16_t tag;
    uint16_t type;  // 3 SHORT, 4 LONG, 5 RATIONAL (values in pairs)
    std::vector<uint32_t> values;
    int64_t count = -1;  // the count written; -1: the number of values (pairs for RATIONAL)
};

class TiffBuilder {
public:
    bool little_endian = true;
    std::vector<TiffEntry> entries;
    std::vector<std::vector<uint8_t>> strips;
    std::vector<size_t> storage;  // order of the strips in the file; empty: as given
    uint32_t next_directory = 0;

    // A file with a grey, RGB or palette image whose rows are cut into strips
    // of rows_per_strip; pixel (r, c, k) = value(r, c, k).
    template <typename Value>
    static TiffBuilder image(char type, int width, int height, int rows_per_strip, Value value) {
        TiffBuilder b;
        const int samples = type == 'c' ? 3 : 1;
        for (int r0 = 0; r0 < height; r0 += rows_per_strip) {
            std::vector<uint8_t> strip;
            for (int r = r0; r < height && r < r0 + rows_per_strip; ++r)
                for (int c = 0; c < width; ++c)
                    for (int k = 0; k < samples; ++k) strip.push_back(static_cast<uint8_t>(value(r, c, k)));
            b.strips.push_back(strip);
        }
        const uint32_t w = static_cast<uint32_t>(width), h = static_cast<uint32_t>(height);
        b.entries = {{256, 3, {w}}, {257, 3, {h}}, {258, 3, std::vector<uint32_t>(samples, 8)}, {259, 3, {1}},
                     {262, 3, {type == 'g' ? 1u : type == 'p' ? 3u : 2u}}, {273, 4, {}}};
        if (samples == 3) b.entries.push_back({277, 3, {3}});
        b.entries.push_back({278, 3, {static_cast<uint32_t>(rows_per_strip)}});
        b.entries.push_back({279, 4, {}});
        if (type == 'p') {
            std::vector<uint32_t> map(768);
            for (int k = 0; k < 3; ++k)
                for (int i = 0; i < 256; ++i) map[256 * k + i] = 257u * palette_entry(i, k);
            b.entries.push_back({320, 3, map});
        }
        return b;
    }

    TiffEntry* find(uint16_t tag) {
        for (auto& e : entries)
            if (e.tag == tag) return &e;
        return nullptr;
    }
    void remove(uint16_t tag) {
        for (size_t i = 0; i < entries.size(); ++i)
            if (entries[i].tag == tag) entries.erase(entries.begin() + static_cast<long>(i));
    }

    std::vector<uint8_t> build() const {
        const size_t n = entries.size();
        std::vector<size_t> value_at(n, 0);
        size_t end = 8 + 2 + 12 * n + 4;  // the long values follow the directory
        for (size_t i = 0; i < n; ++i) {
            const size_t size = value_bytes(resolved(i, {}));
            if (size > 4) {
                value_at[i] = end;
                end += (size + 1) & ~size_t{1};
            }
        }
        std::vector<size_t> order = storage;
        if (order.empty())
            for (size_t i = 0; i < strips.size(); ++i) order.push_back(i);
        std::vector<uint32_t> strip_at(strips.size(), 0);
        for (size_t i : order) {
            strip_at[i] = static_cast<uint32_t>(end);
            end += strips[i].size();
        }

        std::vector<uint8_t> b;
        b.push_back(little_endian ? 'I' : 'M');
        b.push_back(little_endian ? 'I' : 'M');
        put(b, 42, 2);
        put(b, 8, 4);
        put(b, static_cast<uint32_t>(n), 2);
        for (size_t i = 0; i < n; ++i) {
            const TiffEntry e = resolved(i, strip_at);
            put(b, e.tag, 2);
            put(b, e.type, 2);
            put(b, static_cast<uint32_t>(e.count), 4);
            if (value_bytes(e) > 4) {
                put(b, static_cast<uint32_t>(value_at[i]), 4);
            } else {
                const size_t start = b.size();
                put_values(b, e);
                b.resize(start + 4, 0);
            }
        }
        put(b, next_directory, 4);
        for (size_t i = 0; i < n; ++i) {
            const TiffEntry e = resolved(i, strip_at);
            if (value_bytes(e) <= 4) continue;
            put_values(b, e);
            if (b.size() & 1) b.push_back(0);
        }
        for (size_t i : order) b.insert(b.end(), strips[i].begin(), strips[i].end());
        return b;
    }

private:
    static size_t type_size(uint16_t type) { return type == 3 ? 2 : type == 5 ? 8 : 4; }
    static size_t value_bytes(const TiffEntry& e) { return type_size(e.type) * e.values.size() / (e.type == 5 ? 2 : 1); }

    TiffEntry resolved(size_t i, const std::vector<uint32_t>& strip_at) const {
        TiffEntry e = entries[i];
        if (e.values.empty() && (e.tag == 273 || e.tag == 279)) {
            for (size_t s = 0; s < strips.size(); ++s)
                e.values.push_back(e.tag == 279 ? static_cast<uint32_t>(strips[s].size())
                                                : (strip_at.empty() ? 0 : strip_at[s]));
        }
        if (e.count < 0) e.count = static_cast<int64_t>(e.values.size() / (e.type == 5 ? 2 : 1));
        return e;
    }

    void put(std::vector<uint8_t>& b, uint32_t v, int size) const {
        for (int i = 0; i < size; ++i) {
            const int shift = little_endian ? 8 * i : 8 * (size - 1 - i);
            b.push_back(static_cast<uint8_t>(v >> shift));
        }
    }
    void put_values(std::vector<uint8_t>& b, const TiffEntry& e) const {
        for (uint32_t v : e.values) put(b, v, e.type == 3 ? 2 : 4);
    }
};

// An in-memory stream over the bytes, as read_TIFF sees a file.
inline FILE* open_bytes(std::vector<uint8_t>& bytes) {
    if (bytes.empty()) return fmemopen(nullptr, 1, "w+b");  // an empty but readable stream
    return fmemopen(bytes.data(), bytes.size(), "rb");
}

// get_TIFF's image of the type and size whose sample k of pixel (r, c) is
// value(r, c, k), with the test palette for 'p'. Returns get_TIFF's result.
template <typename Value>
int make_image(TIFF_IMG& img, char type, int width, int height, Value value) {
    if (get_TIFF(&img, height, width, type) != 0) return 1;
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c) {
            if (type == 'c') {
                for (int k = 0; k < 3; ++k) img.color[k][r][c] = static_cast<unsigned char>(value(r, c, k));
            } else {
                img.mono[r][c] = static_cast<unsigned char>(value(r, c, 0));
            }
        }
    if (type == 'p') {
        for (int i = 0; i < 256; ++i)
            for (int k = 0; k < 3; ++k) img.cmap[i][k] = palette_entry(i, k);
    }
    return 0;
}

// write_TIFF into memory: its result, and the file in `bytes`.
inline int write_bytes(TIFF_IMG& img, std::vector<uint8_t>& bytes) {
    char* data = nullptr;
    size_t size = 0;
    FILE* fp = open_memstream(&data, &size);
    if (fp == nullptr) return 1;
    const int rc = write_TIFF(fp, &img);
    std::fclose(fp);
    bytes.assign(data, data + size);
    std::free(data);
    return rc;
}

inline bool save_file(const std::string& path, const std::vector<uint8_t>& bytes) {
    FILE* fp = std::fopen(path.c_str(), "wb");
    if (fp == nullptr) return false;
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), fp) == bytes.size();
    return std::fclose(fp) == 0 && ok;
}

#endif  // MOLO_TESTS_DEBUG_TIFF_BUILDER_H
