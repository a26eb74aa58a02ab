// TIFF files in memory: images through the library's writer into bytes, and
// bytes back to read_TIFF as a stream; and a written file's directory, so
// that a test can change any field of it in place.
#ifndef MOLO_TESTS_DEBUG_TIFF_MEMORY_H
#define MOLO_TESTS_DEBUG_TIFF_MEMORY_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "molo/debug.h"

// An in-memory stream over the bytes, as read_TIFF sees a file.
inline FILE* open_bytes(std::vector<uint8_t>& bytes) {
    if (bytes.empty()) return fmemopen(nullptr, 1, "w+b");  // an empty but readable stream
    return fmemopen(bytes.data(), bytes.size(), "rb");
}

// get_TIFF's image of the type and size whose sample k of pixel (r, c) is
// value(r, c, k); palette entry i is (i, 255 - i, 7 i mod 256). Returns
// get_TIFF's result.
template <typename Value>
int make_image(TIFF_IMG& img, char type, int width, int height, Value value) {
    if (get_TIFF(&img, height, width, type) != 0) return 1;
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c)
            for (int k = 0; k < (type == 'c' ? 3 : 1); ++k)
                (type == 'c' ? img.color[k][r][c] : img.mono[r][c]) =
                    static_cast<unsigned char>(value(r, c, k));
    for (int i = 0; i < 256 && type == 'p'; ++i) {
        img.cmap[i][0] = static_cast<unsigned char>(i);
        img.cmap[i][1] = static_cast<unsigned char>(255 - i);
        img.cmap[i][2] = static_cast<unsigned char>((i * 7) & 255);
    }
    return 0;
}

// An image read back as flat row-major planes (mono; or R, G, B) and its
// colour map as 256 RGB triples; type 0 when read_TIFF refuses the bytes.
struct FlatImage {
    int height = 0, width = 0;
    char type = 0;
    std::vector<unsigned char> plane[3], cmap;
    int at(int p, int r, int c) const { return plane[p][r * width + c]; }
};

inline FlatImage read_flat(std::vector<uint8_t> bytes) {
    FlatImage out;
    TIFF_IMG img;
    FILE* fp = open_bytes(bytes);
    const int failed = read_TIFF(fp, &img);
    std::fclose(fp);
    if (failed != 0) return out;
    out.height = img.height, out.width = img.width, out.type = img.TIFF_type;
    for (int p = 0; p < (out.type == 'c' ? 3 : 1); ++p) {
        unsigned char** rows = out.type == 'c' ? img.color[p] : img.mono;
        for (int r = 0; r < img.height; ++r)
            out.plane[p].insert(out.plane[p].end(), rows[r], rows[r] + img.width);
    }
    if (img.cmap != nullptr) out.cmap.assign(img.cmap[0], img.cmap[0] + 768);
    free_TIFF(&img);
    return out;
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

// A file from the library's writer (big-endian), whose fields can be found
// and overwritten in place.
struct WrittenTiff {
    std::vector<uint8_t> b;

    template <typename Value>
    WrittenTiff(char type, int width, int height, Value value) {
        TIFF_IMG img;
        if (make_image(img, type, width, height, value) != 0) return;
        write_bytes(img, b);
        free_TIFF(&img);
    }
    uint32_t get(size_t at, int size) const {
        uint32_t v = 0;
        for (int i = 0; i < size; ++i) v = v << 8 | b.at(at + i);
        return v;
    }
    void put(size_t at, uint32_t v, int size) {
        for (int i = 0; i < size; ++i) b.at(at + i) = static_cast<uint8_t>(v >> 8 * (size - 1 - i));
    }
    size_t directory() const { return get(4, 4); }
    // Where the entry of `tag` stands (its tag number), and where its values do.
    size_t entry(uint16_t tag) const {
        for (uint32_t i = 0; i < get(directory(), 2); ++i)
            if (get(directory() + 2 + 12 * i, 2) == tag) return directory() + 2 + 12 * i;
        std::abort();
    }
    size_t values(uint16_t tag) const {
        const size_t e = entry(tag);
        return (get(e + 2, 2) == 3 ? 2 : 4) * get(e + 4, 4) > 4 ? get(e + 8, 4) : e + 8;
    }
};

#endif  // MOLO_TESTS_DEBUG_TIFF_MEMORY_H
