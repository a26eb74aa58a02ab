#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "debug/tiff_memory.h"

namespace {

int pixel(int r, int c, int k) { return (r * 31 + c * 7 + k * 101) & 255; }

// read_TIFF on the bytes: its stderr, and the image checked against pixel()
// and the test palette.
std::string expect_read(std::vector<uint8_t> bytes, char type, int width, int height) {
    TIFF_IMG img{};
    FILE* fp = open_bytes(bytes);
    testing::internal::CaptureStderr();
    const int rc = read_TIFF(fp, &img);
    const std::string err = testing::internal::GetCapturedStderr();
    std::fclose(fp);
    EXPECT_EQ(rc, 0) << err;
    if (rc != 0) return err;
    EXPECT_EQ(img.TIFF_type, type);
    EXPECT_EQ(img.compress_type, 'u');
    EXPECT_EQ(img.width, width);
    EXPECT_EQ(img.height, height);
    int wrong = 0;
    for (int r = 0; r < height && img.width == width && img.height == height; ++r)
        for (int c = 0; c < width; ++c)
            for (int k = 0; k < (type == 'c' ? 3 : 1); ++k)
                wrong += (type == 'c' ? img.color[k][r][c] : img.mono[r][c]) != pixel(r, c, k);
    EXPECT_EQ(wrong, 0);
    if (type == 'p') {
        EXPECT_EQ(img.cmap[10][0], 10);
        EXPECT_EQ(img.cmap[10][1], 245);
        EXPECT_EQ(img.cmap[10][2], 70);
    }
    free_TIFF(&img);
    return err;
}

}  // namespace

// Little-endian files and other strip sizes come from tiffcp (interop test).
TEST(TiffReader, ReadsBackWhatTheWriterWrote) {
    const struct {
        char type;
        int width, height;
    } cases[] = {{'g', 100, 200}, {'c', 2667, 5}, {'p', 100, 81}};  // several strips each
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        EXPECT_EQ(expect_read(WrittenTiff(c.type, c.width, c.height, pixel).b, c.type, c.width, c.height), "");
    }
}

TEST(TiffReader, DefaultsRowsPerStripAndKeepsTheFirstOfSeveralImages) {
    WrittenTiff f('g', 6, 4, pixel);
    f.put(f.entry(278), 274, 2);  // RowsPerStrip becomes a field the reader does not use
    f.put(f.directory() + 2 + 12 * 11, 8, 4);
    EXPECT_EQ(expect_read(f.b, 'g', 6, 4),
              "WARNING:  this TIFF file contains multiple images;\n"
              "all but the first image will be ignored by the TIFF reader\n");
}
