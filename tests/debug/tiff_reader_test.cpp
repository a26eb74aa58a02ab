#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "debug/tiff_builder.h"
#include "molo/debug.h"

namespace {

int pixel(int r, int c, int k) { return (r * 31 + c * 7 + k * 101) & 255; }

struct Read {
    int rc = -1;
    TIFF_IMG img{};
    std::string err;
};

Read read_bytes(std::vector<uint8_t> bytes) {
    Read out;
    FILE* fp = open_bytes(bytes);
    testing::internal::CaptureStderr();
    out.rc = read_TIFF(fp, &out.img);
    out.err = testing::internal::GetCapturedStderr();
    std::fclose(fp);
    return out;
}

// Every pixel of the read image equals pixel(); a palette is the builder's.
void expect_image(const TIFF_IMG& img, char type, int width, int height) {
    ASSERT_EQ(img.TIFF_type, type);
    ASSERT_EQ(img.width, width);
    ASSERT_EQ(img.height, height);
    EXPECT_EQ(img.compress_type, 'u');
    int wrong = 0;
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c) {
            if (type == 'c') {
                for (int k = 0; k < 3; ++k) wrong += img.color[k][r][c] != pixel(r, c, k);
            } else {
                wrong += img.mono[r][c] != pixel(r, c, 0);
            }
        }
    EXPECT_EQ(wrong, 0);
    if (type == 'p') {
        EXPECT_EQ(img.cmap[10][0], 10);
        EXPECT_EQ(img.cmap[10][1], 245);
        EXPECT_EQ(img.cmap[10][2], 70);
    }
}

}  // namespace

TEST(TiffReader, ReadsBackWhatTheWriterWrote) {
    struct Case {
        char type;
        int width, height;  // several strips each: 80 and 54 rows per strip
    } cases[] = {{'g', 100, 200}, {'c', 50, 120}, {'p', 100, 81}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        TIFF_IMG img;
        ASSERT_EQ(make_image(img, c.type, c.width, c.height, pixel), 0);
        std::vector<uint8_t> bytes;
        ASSERT_EQ(write_bytes(img, bytes), 0);
        Read back = read_bytes(bytes);
        free_TIFF(&img);
        ASSERT_EQ(back.rc, 0) << back.err;
        EXPECT_EQ(back.err, "");
        expect_image(back.img, c.type, c.width, c.height);
        free_TIFF(&back.img);
    }
}

TEST(TiffReader, ReadsBothByteOrdersAndStripsStoredInAnyOrder) {
    for (bool little : {true, false}) {
        for (char type : {'g', 'c', 'p'}) {
            SCOPED_TRACE(std::string(little ? "II " : "MM ") + type);
            TiffBuilder b = TiffBuilder::image(type, 13, 10, 3, pixel);  // 4 strips, the last of 1 row
            b.little_endian = little;
            b.storage = {2, 0, 3, 1};
            Read back = read_bytes(b.build());
            ASSERT_EQ(back.rc, 0) << back.err;
            expect_image(back.img, type, 13, 10);
            free_TIFF(&back.img);
        }
    }
}

TEST(TiffReader, TakesFieldsInEitherIntegerTypeAndDefaultsRowsPerStrip) {
    // One strip with no RowsPerStrip, LONG sizes, SHORT strip table, an
    // oversized byte count, and fields the reader does not use.
    TiffBuilder b = TiffBuilder::image('g', 6, 4, 4, pixel);
    b.remove(278);
    b.find(256)->type = 4;
    b.find(273)->type = 3;
    b.find(279)->values = {30};
    b.entries.push_back({282, 5, {72, 1}});
    b.entries.push_back({305, 2, {0x41424300}});
    b.strips[0].resize(30, 0xEE);
    Read back = read_bytes(b.build());
    ASSERT_EQ(back.rc, 0) << back.err;
    expect_image(back.img, 'g', 6, 4);
    free_TIFF(&back.img);
}

TEST(TiffReader, KeepsTheFirstOfSeveralImagesWithAWarning) {
    TiffBuilder b = TiffBuilder::image('g', 3, 2, 2, pixel);
    b.next_directory = 8;
    Read back = read_bytes(b.build());
    ASSERT_EQ(back.rc, 0);
    EXPECT_EQ(back.err,
              "WARNING:  this TIFF file contains multiple images;\n"
              "all but the first image will be ignored by the TIFF reader\n");
    expect_image(back.img, 'g', 3, 2);
    free_TIFF(&back.img);
}
