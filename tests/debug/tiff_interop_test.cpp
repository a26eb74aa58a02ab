// The debug TIFF files through libtiff's tiffcp (Debian libtiff-tools), a
// reader and writer of its own: what write_TIFF writes, tiffcp reads and
// rewrites little-endian in small strips, and read_TIFF reads that back to
// the same pixels; what tiffcp compresses, read_TIFF refuses. Skipped when
// tiffcp is missing.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "debug/dump_files.h"
#include "debug/tiff_memory.h"

namespace {

class TiffInterop : public DumpFiles {
protected:
    void SetUp() override {
        if (std::system("command -v tiffcp >/dev/null 2>&1") != 0) GTEST_SKIP() << "tiffcp is missing";
        DumpFiles::SetUp();
    }
    bool tiffcp(const std::string& args, const char* in, const char* out) {
        return std::system(("tiffcp " + args + " '" + in + "' '" + out + "' 2>/dev/null").c_str()) == 0;
    }
};

int pixel(int r, int c, int k) { return (31 * r + 7 * c + 97 * k + (r * c) % 13) % 256; }

}  // namespace

TEST_F(TiffInterop, TiffcpReadsTheWritersFilesAndWritesFilesTheReaderReads) {
    const struct {
        char type;
        int width, height;
    } cases[] = {{'g', 301, 250}, {'c', 2667, 5}, {'p', 45, 31}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        TIFF_IMG img;
        ASSERT_EQ(make_image(img, c.type, c.width, c.height, pixel), 0);
        std::vector<uint8_t> bytes;
        ASSERT_EQ(write_bytes(img, bytes), 0);
        free_TIFF(&img);
        ASSERT_TRUE(save_file(path("lib.tif"), bytes));
        ASSERT_TRUE(tiffcp("-L -r 3", path("lib.tif"), path("cp.tif")));
        const DumpImage back = read_image(path("cp.tif"));
        ASSERT_EQ(back.type, c.type);
        ASSERT_EQ(back.width, c.width);
        ASSERT_EQ(back.height, c.height);
        int wrong = 0;
        for (int r = 0; r < c.height; ++r)
            for (int col = 0; col < c.width; ++col)
                for (int k = 0; k < (c.type == 'c' ? 3 : 1); ++k) wrong += back.at(k, r, col) != pixel(r, col, k);
        EXPECT_EQ(wrong, 0);
    }
}

TEST_F(TiffInterop, CompressedFilesAreRefused) {
    Bytes grey(40 * 20, 7);
    ASSERT_EQ(TIFF_SaveY(grey.data(), 40, 20, path("grey.tif")), 0);
    const struct {
        const char* scheme;
        const char* message;
    } cases[] = {{"packbits", "PackBits compression not supported\n"},
                 {"lzw", "Compression value 5 not recognized; could not"},
                 {"zip", "Compression value 8 not recognized; could not"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.scheme);
        ASSERT_TRUE(tiffcp(std::string("-c ") + c.scheme, path("grey.tif"), path("packed.tif")));
        testing::internal::CaptureStderr();
        EXPECT_EQ(read_image(path("packed.tif")).type, 0);
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.message), std::string::npos);
    }
}
