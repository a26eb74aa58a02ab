#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "debug/tiff_builder.h"
#include "molo/debug.h"

namespace {

struct Written {
    int rc = -1;
    std::vector<uint8_t> bytes;
    std::string err;
};

Written write_to_memory(TIFF_IMG& img) {
    Written w;
    testing::internal::CaptureStderr();
    w.rc = write_bytes(img, w.bytes);
    w.err = testing::internal::GetCapturedStderr();
    return w;
}

uint32_t be(const std::vector<uint8_t>& b, size_t at, int size) {
    uint32_t v = 0;
    for (int i = 0; i < size; ++i) v = v << 8 | b.at(at + i);
    return v;
}

struct DirEntry {
    uint16_t type;
    uint32_t count;
    size_t value_at;  // where the value stands: inside the entry, or at its offset
};

// The directory of a written file, by tag, in the order the entries stand.
struct Directory {
    std::vector<uint16_t> tags;
    std::map<uint16_t, DirEntry> entries;
    uint32_t next = 1;

    explicit Directory(const std::vector<uint8_t>& b) {
        const size_t at = be(b, 4, 4);
        const uint32_t n = be(b, at, 2);
        for (uint32_t i = 0; i < n; ++i) {
            const size_t e = at + 2 + 12 * i;
            const uint16_t tag = be(b, e, 2), type = be(b, e + 2, 2);
            const uint32_t count = be(b, e + 4, 4);
            const uint32_t size = (type == 3 ? 2 : type == 4 ? 4 : 8) * count;
            tags.push_back(tag);
            entries[tag] = {type, count, size > 4 ? be(b, e + 8, 4) : e + 8};
        }
        next = be(b, at + 2 + 12 * n, 4);
    }
    uint32_t value(const std::vector<uint8_t>& b, uint16_t tag, uint32_t i = 0) const {
        const DirEntry& e = entries.at(tag);
        const int size = e.type == 3 ? 2 : 4;
        return be(b, e.value_at + size * i, size);
    }
};

TIFF_IMG grey(int height, int width) {
    TIFF_IMG img;
    EXPECT_EQ(get_TIFF(&img, height, width, 'g'), 0);
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c) img.mono[r][c] = static_cast<unsigned char>(r * 3 + c);
    return img;
}

}  // namespace

TEST(TiffWriter, OnePixelGreyFileByteByByte) {
    TIFF_IMG img = grey(1, 1);
    img.mono[0][0] = 0xAB;
    const Written w = write_to_memory(img);
    free_TIFF(&img);
    ASSERT_EQ(w.rc, 0);
    EXPECT_EQ(w.err, "");
    const std::vector<uint8_t> head(w.bytes.begin(), w.bytes.begin() + 12);
    // "MM", 42, directory at 10 (the first even offset after the one strip byte
    // at 8), the strip byte, the pad byte, then 11 entries.
    EXPECT_EQ(head, (std::vector<uint8_t>{0x4D, 0x4D, 0x00, 0x2A, 0, 0, 0, 10, 0xAB, 0, 0, 11}));

    const Directory d(w.bytes);
    EXPECT_EQ(d.tags, (std::vector<uint16_t>{256, 257, 258, 259, 262, 273, 278, 279, 282, 283, 296}));
    const std::map<uint16_t, std::vector<uint32_t>> expected = {
        // tag: type, count, value
        {256, {3, 1, 1}}, {257, {3, 1, 1}}, {258, {3, 1, 8}}, {259, {3, 1, 1}}, {262, {3, 1, 1}},
        {273, {4, 1, 8}}, {278, {3, 1, 1}}, {279, {3, 1, 1}}, {296, {3, 1, 2}}};
    for (const auto& [tag, e] : expected) {
        SCOPED_TRACE(tag);
        EXPECT_EQ(d.entries.at(tag).type, e[0]);
        EXPECT_EQ(d.entries.at(tag).count, e[1]);
        EXPECT_EQ(d.value(w.bytes, tag), e[2]);
    }
    // The resolutions, 100/1 each, follow the next-directory offset 0.
    EXPECT_EQ(d.next, 0u);
    const size_t after_directory = 10 + 2 + 12 * 11 + 4;
    EXPECT_EQ(d.entries.at(282).value_at, after_directory);
    EXPECT_EQ(d.entries.at(283).value_at, after_directory + 8);
    for (size_t at : {after_directory, after_directory + 8}) {
        EXPECT_EQ(be(w.bytes, at, 4), 100u);
        EXPECT_EQ(be(w.bytes, at + 4, 4), 1u);
    }
    EXPECT_EQ(w.bytes.size(), after_directory + 16);
}

TEST(TiffWriter, RowsPerStripMakeStripsOfAtLeast8000Bytes) {
    struct Case {
        int width, height;
        uint32_t rows_per_strip, strips, last_strip_bytes;
    } cases[] = {
        {100, 200, 80, 3, 4000},  // 100-byte rows: 80 per strip, 40 left over
        {100, 30, 30, 1, 3000},   // never more rows than the image has
        {8000, 3, 1, 3, 8000},    // a row of 8000 bytes or more is a strip
        {7999, 3, 2, 2, 7999},    // just below: at least two rows
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.width);
        TIFF_IMG img = grey(c.height, c.width);
        const Written w = write_to_memory(img);
        ASSERT_EQ(w.rc, 0);
        const Directory d(w.bytes);
        EXPECT_EQ(d.value(w.bytes, 278), c.rows_per_strip);
        ASSERT_EQ(d.entries.at(273).count, c.strips);
        ASSERT_EQ(d.entries.at(279).count, c.strips);
        const uint32_t full = c.rows_per_strip * c.width;
        for (uint32_t s = 0; s < c.strips; ++s) {
            EXPECT_EQ(d.value(w.bytes, 273, s), 8 + s * full);
            EXPECT_EQ(d.value(w.bytes, 279, s), s + 1 == c.strips ? c.last_strip_bytes : full);
        }
        // Rows are stored top to bottom from offset 8.
        const uint32_t last_row_start = 8 + (c.height - 1) * c.width;
        EXPECT_EQ(w.bytes[last_row_start + 1], img.mono[c.height - 1][1]);
        free_TIFF(&img);
    }
}

TEST(TiffWriter, ColourPixelsArePackedAsRGBTriples) {
    TIFF_IMG img;
    ASSERT_EQ(get_TIFF(&img, 1, 2, 'c'), 0);
    const unsigned char rgb[2][3] = {{1, 2, 3}, {4, 5, 6}};
    for (int c = 0; c < 2; ++c)
        for (int k = 0; k < 3; ++k) img.color[k][0][c] = rgb[c][k];
    const Written w = write_to_memory(img);
    free_TIFF(&img);
    ASSERT_EQ(w.rc, 0);
    EXPECT_EQ(std::vector<uint8_t>(w.bytes.begin() + 8, w.bytes.begin() + 14),
              (std::vector<uint8_t>{1, 2, 3, 4, 5, 6}));
    const Directory d(w.bytes);
    EXPECT_EQ(d.tags, (std::vector<uint16_t>{256, 257, 258, 259, 262, 273, 277, 278, 279, 282, 283, 296}));
    EXPECT_EQ(d.value(w.bytes, 262), 2u);
    EXPECT_EQ(d.value(w.bytes, 277), 3u);
    ASSERT_EQ(d.entries.at(258).count, 3u);
    for (uint32_t i = 0; i < 3; ++i) EXPECT_EQ(d.value(w.bytes, 258, i), 8u);
    EXPECT_EQ(d.value(w.bytes, 279), 6u);
}

TEST(TiffWriter, PaletteIsWrittenAsSixteenBitColorMap) {
    TIFF_IMG img;
    ASSERT_EQ(get_TIFF(&img, 1, 1, 'p'), 0);
    img.cmap[5][0] = 255;
    img.cmap[5][1] = 1;
    img.cmap[5][2] = 0x80;
    const Written w = write_to_memory(img);
    free_TIFF(&img);
    ASSERT_EQ(w.rc, 0);
    const Directory d(w.bytes);
    EXPECT_EQ(d.tags.back(), 320);
    EXPECT_EQ(d.value(w.bytes, 262), 3u);
    EXPECT_EQ(d.entries.at(320).type, 3);
    ASSERT_EQ(d.entries.at(320).count, 768u);
    EXPECT_EQ(d.value(w.bytes, 320, 5), 0xFFFFu);
    EXPECT_EQ(d.value(w.bytes, 320, 256 + 5), 0x0101u);
    EXPECT_EQ(d.value(w.bytes, 320, 512 + 5), 0x8080u);
    EXPECT_EQ(d.value(w.bytes, 320, 6), 0u);
}

TEST(TiffWriter, SizesFromSixteenBitsOnAreLong) {
    TIFF_IMG img = grey(1, 65536);
    const Written w = write_to_memory(img);
    free_TIFF(&img);
    ASSERT_EQ(w.rc, 0);
    const Directory d(w.bytes);
    EXPECT_EQ(d.entries.at(256).type, 4);
    EXPECT_EQ(d.value(w.bytes, 256), 65536u);
    EXPECT_EQ(d.entries.at(257).type, 3);
    EXPECT_EQ(d.entries.at(279).type, 4);
    EXPECT_EQ(d.value(w.bytes, 279), 65536u);
}

TEST(TiffWriter, RefusesRecordsItCannotWrite) {
    struct Case {
        char type;
        int height;
        char compress;
        const char* message;
    } cases[] = {
        {'x', 2, 'u',
         "tiff:  function GetBytesPerRow:\nwriter is not prepared to compute bytes_per_row\n"
         "for image of TIFF_type 'x'\n"},
        {'g', 0, 'u',
         "tiff:  function GetRowsPerStrip:\nheight entry in TIFF image structure\n"
         "claims that image height is not positive\n"},
        {'g', -3, 'u',
         "tiff:  function GetRowsPerStrip:\nheight entry in TIFF image structure\n"
         "claims that image height is not positive\n"},
        {'g', 2, 'p', "tiff:  function WriteStrip:\nTIFF writer not prepared to compress data\nwith compress_type p\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        TIFF_IMG img = grey(2, 2);
        const char type = img.TIFF_type;
        img.TIFF_type = c.type;
        img.height = c.height;
        img.compress_type = c.compress;
        const Written w = write_to_memory(img);
        EXPECT_EQ(w.rc, 1);
        EXPECT_EQ(w.err, c.message);
        EXPECT_TRUE(w.bytes.empty());
        img.TIFF_type = type;
        free_TIFF(&img);
    }
}
