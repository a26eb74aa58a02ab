#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

#include "debug/tiff_memory.h"
#include "molo/debug.h"

namespace {

uint64_t fnv1a(const std::vector<uint8_t>& bytes) {
    uint64_t h = 14695981039346656037ull;
    for (uint8_t b : bytes) h = (h ^ b) * 1099511628211ull;
    return h;
}

int ramp(int r, int c, int k) { return r * 3 + c + 50 * k; }

// The pixels of a file read back by read_TIFF that differ from ramp(), or -1
// when it is not read as an image of that type and size (with the palette
// written).
int wrong_pixels(const std::vector<uint8_t>& bytes, char type, int width, int height) {
    const FlatImage img = read_flat(bytes);
    if (img.type != type || img.width != width || img.height != height) return -1;
    if (type == 'p' && img.cmap.at(10 * 3 + 1) != 245) return -1;
    int wrong = 0;
    for (int k = 0; k < (type == 'c' ? 3 : 1); ++k)
        for (int i = 0; i < width * height; ++i)
            wrong += img.plane[k][i] != (ramp(i / width, i % width, k) & 255);
    return wrong;
}

}  // namespace

// The files are fixed to the byte, and read back to the same pixels. "MM",
// 42, then the image from offset 8 (and a pad byte after an odd length) in
// strips of whole rows of at least 8000 bytes where the image has them; then
// the directory, sorted by tag, with sizes from 65536 on as LONG; colour as
// RGB triples, a palette as a 16-bit colour map.
TEST(TiffWriter, FilesAreFixedToTheByteAndReadBack) {
    const struct {
        char type;
        int width, height;
        size_t size;
        uint64_t digest;
    } cases[] = {
        {'g', 1, 1, 164, 12910481526849148631ull},
        {'g', 100, 200, 20180,
         5849427719718203861ull},                      // 100-byte rows: 80 per strip, 40 left over
        {'g', 100, 30, 3162, 5672236537128754529ull},  // never more rows than the image has
        {'g', 8000, 3, 24180, 13098357715493933707ull},  // a row of 8000 bytes or more is a strip
        {'g', 7999, 3, 24168, 14175607859458106879ull},  // just below: at least two rows
        {'g', 65536, 1, 65698, 18113854166751029906ull},
        {'c', 37, 23, 2734, 16096308989940325658ull},
        {'p', 37, 23, 2562, 10628600136425464998ull},
    };
    for (const auto& c : cases) {
        TIFF_IMG img;
        ASSERT_EQ(make_image(img, c.type, c.width, c.height, ramp), 0);
        std::vector<uint8_t> bytes;
        testing::internal::CaptureStderr();
        EXPECT_EQ(write_bytes(img, bytes), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        free_TIFF(&img);
        EXPECT_EQ(bytes.size(), c.size) << c.type << c.width;
        EXPECT_EQ(fnv1a(bytes), c.digest) << c.type << c.width << " 0x" << std::hex << fnv1a(bytes);
        EXPECT_EQ(wrong_pixels(bytes, c.type, c.width, c.height), 0) << c.type << c.width;
    }
}
