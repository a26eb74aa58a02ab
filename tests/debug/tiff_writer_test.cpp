#include <gtest/gtest.h>

#include <cstdio>
#include <string>
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

}  // namespace

// The files are fixed to the byte. Big-endian whatever the host; the image
// first from offset 8, in strips of whole rows of at least 8000 bytes where
// the image has them; then the directory, sorted by tag, with sizes from
// 65536 on as LONG; colour as RGB triples, a palette as a 16-bit colour map.
// (tiffcp reads them back: see the interop test.)
TEST(TiffWriter, FilesAreFixedToTheByte) {
    {
        TIFF_IMG img;
        ASSERT_EQ(make_image(img, 'g', 1, 1, [](int, int, int) { return 0xAB; }), 0);
        std::vector<uint8_t> bytes;
        ASSERT_EQ(write_bytes(img, bytes), 0);
        free_TIFF(&img);
        // "MM", 42, directory at 10 (the first even offset after the one strip
        // byte at 8), the strip byte, the pad byte, then 11 entries.
        EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 12),
                  (std::vector<uint8_t>{0x4D, 0x4D, 0x00, 0x2A, 0, 0, 0, 10, 0xAB, 0, 0, 11}));
    }
    const struct {
        char type;
        int width, height;
        size_t size;
        uint64_t digest;
    } cases[] = {
        {'g', 1, 1, 164, 12910481526849148631ull},
        {'g', 100, 200, 20180, 5849427719718203861ull},   // 100-byte rows: 80 per strip, 40 left over
        {'g', 100, 30, 3162, 5672236537128754529ull},    // never more rows than the image has
        {'g', 8000, 3, 24180, 13098357715493933707ull},    // a row of 8000 bytes or more is a strip
        {'g', 7999, 3, 24168, 14175607859458106879ull},    // just below: at least two rows
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
    }
}

TEST(TiffWriter, RefusesRecordsItCannotWrite) {
    const struct {
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
        {'g', 2, 'p', "tiff:  function WriteStrip:\nTIFF writer not prepared to compress data\nwith compress_type p\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        TIFF_IMG img;
        ASSERT_EQ(get_TIFF(&img, 2, 2, 'g'), 0);
        img.TIFF_type = c.type;
        img.height = c.height;
        img.compress_type = c.compress;
        std::vector<uint8_t> bytes;
        testing::internal::CaptureStderr();
        EXPECT_EQ(write_bytes(img, bytes), 1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.message);
        EXPECT_TRUE(bytes.empty());
        img.TIFF_type = 'g';
        free_TIFF(&img);
    }
}
