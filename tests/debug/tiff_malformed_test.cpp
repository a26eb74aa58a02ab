// Files the reader must refuse: each gives 1 and its message, leaves the
// record as it was, and (under the sanitizers) reads nothing out of bounds and
// leaks nothing. One or two cases per step of the reader, made by changing
// the writer's files in place; the fuzzer and its corpus cover the rest.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>

#include "debug/tiff_memory.h"

namespace {

std::string step(const char* name, const std::string& reason) {
    return std::string("tiff:  function ") + name + ":\n" + reason;
}

std::string missing(int tag) {
    return "tiff reader:  function CheckForCoreFields:\nfield for tag " + std::to_string(tag) +
           " does not appear\nin IFD (and has no default)\n";
}

struct Case {
    const char* name;
    char type;  // 'g' 4 x 5 in one strip, 'w' grey 4000 x 6 in three of two rows, 'c' or 'p' 4 x 5
    std::function<void(WrittenTiff&)> edit;
    std::string message;
};

void expect_refused(const Case& c) {
    SCOPED_TRACE(c.name);
    const int width = c.type == 'w' ? 4000 : 4, height = c.type == 'w' ? 6 : 5;
    WrittenTiff f(c.type == 'w' ? 'g' : c.type, width, height,
                  [](int r, int col, int k) { return r + col + k; });
    c.edit(f);

    TIFF_IMG img;
    std::memset(&img, 0x5A, sizeof img);
    TIFF_IMG before = img;
    FILE* fp = open_bytes(f.b);
    ASSERT_NE(fp, nullptr);
    testing::internal::CaptureStderr();
    const int rc = read_TIFF(fp, &img);
    const std::string err = testing::internal::GetCapturedStderr();
    std::fclose(fp);
    EXPECT_EQ(rc, 1);
    EXPECT_EQ(err, c.message);
    EXPECT_EQ(std::memcmp(&img, &before, sizeof img), 0);
}

// The 4 x 5 grey file: header, the strip at 8, the directory at 28 (count,
// 11 entries from 30, the next-directory offset at 162), the resolutions.
std::function<void(WrittenTiff&)> cut(size_t length) {
    return [length](WrittenTiff& f) { f.b.resize(length); };
}

}  // namespace

TEST(TiffMalformed, EveryStepRefusesWithItsMessage) {
    const Case cases[] = {
        {"cut in the header", 'g', cut(3),
         step("ReadHeader", "error reading unsigned short\nerror reading image header\n")},
        {"cut before the strip table", 'w', [](WrittenTiff& f) { f.b.resize(f.values(273) + 2); },
         step("GetStrips", "values of tag 273 lie beyond the end of the file\n")},
        {"directory past the end", 'g', [](WrittenTiff& f) { f.put(4, 0xFFFFFFF0u, 4); },
         step("ReadIFD", "IFD offset 4294967280 lies beyond the end of the file\n")},
        {"short last strip", 'w', [](WrittenTiff& f) { f.put(f.values(279) + 4, 7999, 2); },
         step("GetStrips", "strip number 2 holds 7999 bytes; its rows need 8000\n")},
        {"zero width", 'g', [](WrittenTiff& f) { f.put(f.values(256), 0, 2); },
         step("GetImageSize", "image dimension is less than 1\n")},
        {"over-large", 'c',
         [](WrittenTiff& f) { f.put(f.values(256), 65535, 2), f.put(f.values(257), 65535, 2); },
         step("GetImageSize",
              "image of 65535 x 65535 pixels is larger than this reader accepts\n")},
        // Some of the reader's messages end without a newline; kept as they are.
        {"zero count", 'g', [](WrittenTiff& f) { f.put(f.entry(259) + 4, 0, 4); },
         step("ReadIFD", "encountered 0 as field count")},
        {"misordered tags", 'g',
         [](WrittenTiff& f) { f.put(f.entry(256) + 12, 256, 2), f.put(f.entry(256), 257, 2); },
         step("ReadIFD", "tag 256 follows tag 257; tags in IFD must ascend\n")},
        {"long compression", 'g', [](WrittenTiff& f) { f.put(f.entry(259) + 2, 4, 2); },
         step("ReadIFD", "field type 4 does not fit tag 259;\nfield will be ignored\n") +
             missing(259)},
        {"lzw", 'g', [](WrittenTiff& f) { f.put(f.values(259), 5, 2); },
         step(
             "GetCompression",
             "Compression value 5 not recognized; could not assign\ncompress_type to TIFF_IMG structure\n")},
        {"short colormap", 'p', [](WrittenTiff& f) { f.put(f.entry(320) + 4, 765, 4); },
         step("GetImageType", "unexpected number of entries in colormap\n")},
    };
    for (const Case& c : cases) expect_refused(c);

    TIFF_IMG img{};
    testing::internal::CaptureStderr();
    EXPECT_EQ(read_TIFF(nullptr, &img), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), step("read_TIFF", "no file to read from\n"));
    EXPECT_EQ(img.mono, nullptr);
}
