// Files the reader must refuse: each gives 1 and its message, leaves the
// record as it was, and (under the sanitizers) reads nothing out of bounds and
// leaks nothing.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "debug/tiff_builder.h"
#include "molo/debug.h"

namespace {

// A 4 x 5 image in strips of 2 rows (8, 8 and 4 bytes), laid out as
//   0 header, 8 directory (count, 8 entries from 10), 106 next directory,
//   110 strip offsets, 122 strip byte counts, 134 strips, 154 end.
// ('c' and 'p' images have more entries and long values.)
TiffBuilder base(char type, bool little) {
    TiffBuilder b = TiffBuilder::image(type, 4, 5, 2, [](int r, int c, int k) { return r + c + k; });
    b.little_endian = little;
    return b;
}

void poke32(std::vector<uint8_t>& bytes, size_t at, uint32_t v, bool little) {
    for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<uint8_t>(v >> (little ? 8 * i : 8 * (3 - i)));
}

std::string step(const char* name, const std::string& reason) {
    return std::string("tiff:  function ") + name + ":\n" + reason;
}

std::string missing(int tag) {
    return "tiff reader:  function CheckForCoreFields:\nfield for tag " + std::to_string(tag) +
           " does not appear\nin IFD (and has no default)\n";
}

struct Case {
    std::string name;
    char type;
    std::function<void(TiffBuilder&)> edit;
    std::function<void(std::vector<uint8_t>&, bool little)> poke;
    std::string message;
};

void expect_refused(const Case& c, bool little) {
    SCOPED_TRACE(c.name + (little ? " (II)" : " (MM)"));
    TiffBuilder b = base(c.type, little);
    if (c.edit) c.edit(b);
    std::vector<uint8_t> bytes = b.build();
    if (c.poke) c.poke(bytes, little);

    TIFF_IMG img;
    std::memset(&img, 0x5A, sizeof img);
    TIFF_IMG before = img;
    FILE* fp = open_bytes(bytes);
    ASSERT_NE(fp, nullptr);
    testing::internal::CaptureStderr();
    const int rc = read_TIFF(fp, &img);
    const std::string err = testing::internal::GetCapturedStderr();
    std::fclose(fp);
    EXPECT_EQ(rc, 1);
    EXPECT_EQ(err, c.message);
    EXPECT_EQ(std::memcmp(&img, &before, sizeof img), 0);
}

Case truncated(size_t length, const std::string& message) {
    return {"cut at " + std::to_string(length), 'g', nullptr,
            [length](std::vector<uint8_t>& bytes, bool) { bytes.resize(length); }, message};
}

}  // namespace

TEST(TiffMalformed, TruncatedInsideEverySection) {
    const std::string header_short = step("ReadHeader", "error reading unsigned short\nerror reading image header\n");
    const std::string header_int = step("ReadHeader", "error reading unsigned int\nerror reading image header\n");
    const Case cases[] = {
        truncated(0, header_short),
        truncated(1, header_short),
        truncated(3, header_short),
        truncated(6, header_int),
        truncated(8, step("ReadIFD", "error reading number of fields for IFD\n")),
        truncated(9, step("ReadIFD", "error reading number of fields for IFD\n")),
        truncated(11, step("ReadIFD", "error reading tag\n")),
        truncated(13, step("ReadIFD", "error reading field type\n")),
        truncated(17, step("ReadIFD", "error reading field count")),
        truncated(21, step("ReadIFD", "error reading field value\n")),
        truncated(105, step("ReadIFD", "error reading field value\n")),
        truncated(108, step("ReadIFD", "error reading offset of next IFD\n")),
        truncated(115, step("GetStrips", "values of tag 273 lie beyond the end of the file\n")),
        truncated(130, step("GetStrips", "values of tag 279 lie beyond the end of the file\n")),
        truncated(134, step("GetStrips", "strip number 0 lies beyond the end of the file\n")),
        truncated(153, step("GetStrips", "strip number 2 lies beyond the end of the file\n")),
    };
    for (bool little : {true, false})
        for (const Case& c : cases) expect_refused(c, little);
}

TEST(TiffMalformed, OffsetsCountsAndSizesTheFileCannotHold) {
    const auto set = [](uint16_t tag, std::vector<uint32_t> values, uint16_t type = 0) {
        return [=](TiffBuilder& b) {
            b.find(tag)->values = values;
            if (type != 0) b.find(tag)->type = type;
        };
    };
    const Case cases[] = {
        {"directory past the end", 'g', nullptr,
         [](std::vector<uint8_t>& bytes, bool little) { poke32(bytes, 4, 0xFFFFFFF0u, little); },
         step("ReadIFD", "IFD offset 4294967280 lies beyond the end of the file\n")},
        {"strip past the end", 'g', set(273, {134, 142, 0xFFFFFFF0u}),
         nullptr, step("GetStrips", "strip number 2 lies beyond the end of the file\n")},
        {"strip count past the end", 'g', set(279, {8, 8, 0xFFFFFFFFu}),
         nullptr, step("GetStrips", "strip number 2 lies beyond the end of the file\n")},
        {"strip table past the end", 'g', nullptr,
         [](std::vector<uint8_t>& bytes, bool little) { poke32(bytes, 8 + 2 + 12 * 5 + 8, 0xFFFFFFF0u, little); },
         step("GetStrips", "values of tag 273 lie beyond the end of the file\n")},
        {"short strip", 'g', set(279, {8, 7, 4}), nullptr,
         step("GetStrips", "strip number 1 holds 7 bytes; its rows need 8\n")},
        {"short last strip", 'g', set(279, {8, 8, 3}), nullptr,
         step("GetStrips", "strip number 2 holds 3 bytes; its rows need 4\n")},
        {"too few strips", 'g', set(273, {134, 142}), nullptr,
         step("GetStrips", "field for tag 273 holds 2 values for 3 strips\n")},
        {"huge strip count", 'g', [](TiffBuilder& b) { b.find(279)->count = 0xFFFFFFFF; }, nullptr,
         step("GetStrips", "field for tag 279 holds 4294967295 values for 3 strips\n")},
        {"no rows per strip", 'g', set(278, {0}), nullptr, step("GetStrips", "RowsPerStrip is 0\n")},
        {"zero width", 'g', set(256, {0}), nullptr, step("GetImageSize", "image dimension is less than 1\n")},
        {"zero height", 'g', set(257, {0}), nullptr, step("GetImageSize", "image dimension is less than 1\n")},
        {"over-wide", 'g', set(256, {1u << 21}, 4), nullptr,
         step("GetImageSize", "image of 5 x 2097152 pixels is larger than this reader accepts\n")},
        {"over-large", 'c', [](TiffBuilder& b) { b.find(256)->values = {65535}; b.find(257)->values = {65535}; },
         nullptr, step("GetImageSize", "image of 65535 x 65535 pixels is larger than this reader accepts\n")},
        {"large claim, small file", 'g',
         [](TiffBuilder& b) {
             b.find(256)->values = {1000};
             b.find(257)->values = {1000};
             b.find(278)->values = {1000};
             b.find(273)->values = {134};
             b.find(279)->values = {1000000};
         },
         nullptr, step("GetStrips", "strip number 0 lies beyond the end of the file\n")},
    };
    for (bool little : {true, false})
        for (const Case& c : cases) expect_refused(c, little);
}

TEST(TiffMalformed, BrokenDirectories) {
    const Case cases[] = {
        {"zero count", 'g', [](TiffBuilder& b) { b.find(259)->count = 0; }, nullptr,
         step("ReadIFD", "encountered 0 as field count")},
        {"zero count of an unused tag", 'g', [](TiffBuilder& b) { b.entries.push_back({700, 1, {}}); }, nullptr,
         step("ReadIFD", "encountered 0 as field count")},
        {"repeated tag", 'g', [](TiffBuilder& b) { b.entries.insert(b.entries.begin() + 1, b.entries[1]); }, nullptr,
         step("ReadIFD", "tag 257 appears more than once in IFD\n")},
        {"misordered tags", 'g', [](TiffBuilder& b) { std::swap(b.entries[0], b.entries[1]); }, nullptr,
         step("ReadIFD", "tag 256 follows tag 257; tags in IFD must ascend\n")},
        {"rational width", 'g', [](TiffBuilder& b) { *b.find(256) = {256, 5, {4, 1}}; }, nullptr,
         step("ReadIFD", "field type 5 does not fit tag 256;\nfield will be ignored\n") + missing(256)},
        {"long compression", 'g', [](TiffBuilder& b) { b.find(259)->type = 4; }, nullptr,
         step("ReadIFD", "field type 4 does not fit tag 259;\nfield will be ignored\n") + missing(259)},
        {"two photometric values", 'g', [](TiffBuilder& b) { b.find(262)->values = {1, 1}; }, nullptr,
         step("GetImageType", "field for tag 262 holds 2 values; 1 expected\n")},
        {"two bit depths for one sample", 'g', [](TiffBuilder& b) { b.find(258)->values = {8, 8}; }, nullptr,
         step("GetImageType", "field for tag 258 holds 2 values for 1 samples\n")},
    };
    for (bool little : {true, false})
        for (const Case& c : cases) expect_refused(c, little);

    for (int tag : {256, 257, 259, 262, 273, 279}) {
        expect_refused({"without " + std::to_string(tag), 'g', [tag](TiffBuilder& b) { b.remove(tag); }, nullptr,
                        missing(tag)},
                       true);
    }
}

TEST(TiffMalformed, ImagesTheReaderDoesNotTake) {
    const auto set = [](uint16_t tag, std::vector<uint32_t> values) {
        return [=](TiffBuilder& b) { b.find(tag)->values = values; };
    };
    const auto bits = [](int n) {
        return step("GetImageType", "data is stored at " + std::to_string(n) +
                                        " bits per sample, which\nis not supported by this reader\n");
    };
    const Case cases[] = {
        {"packbits", 'g', set(259, {32773}), nullptr, step("GetCompression", "PackBits compression not supported\n")},
        {"huffman", 'g', set(259, {2}), nullptr,
         step("GetCompression", "1-D modified Huffman compression not supported\n")},
        {"lzw", 'g', set(259, {5}), nullptr,
         step("GetCompression",
              "Compression value 5 not recognized; could not assign\ncompress_type to TIFF_IMG structure\n")},
        {"4-bit grey", 'g', set(258, {4}), nullptr, bits(4)},
        {"bilevel grey", 'g', [](TiffBuilder& b) { b.remove(258); }, nullptr, bits(1)},
        {"4-bit palette", 'p', set(258, {4}), nullptr, bits(4)},
        {"16-bit colour", 'c', set(258, {8, 16, 8}), nullptr, bits(16)},
        {"short colormap", 'p', [](TiffBuilder& b) { b.find(320)->values.resize(765); }, nullptr,
         step("GetImageType", "unexpected number of entries in colormap\n")},
        {"no colormap", 'p', [](TiffBuilder& b) { b.remove(320); }, nullptr,
         step("GetImageType", "unexpected number of entries in colormap\n")},
        {"separated", 'g', set(262, {5}), nullptr, step("GetImageType", "can't infer image type from IFD\n")},
        {"white is zero", 'g', set(262, {0}), nullptr, step("GetImageType", "can't infer image type from IFD\n")},
        {"RGB of one sample", 'c', set(277, {1}), nullptr, step("GetImageType", "can't infer image type from IFD\n")},
        {"separate planes", 'c', [](TiffBuilder& b) { b.entries.push_back({284, 3, {2}}); },
         nullptr, step("GetImageType", "PlanarConfiguration 2 is not supported by this reader\n")},
        {"not a TIFF file", 'g', nullptr, [](std::vector<uint8_t>& bytes, bool) { bytes[0] = bytes[1] = 'X'; }, ""},
        {"not 42", 'g', nullptr, [](std::vector<uint8_t>& bytes, bool little) { bytes[little ? 2 : 3] = 43; }, ""},
    };
    for (bool little : {true, false})
        for (const Case& c : cases) expect_refused(c, little);
}

TEST(TiffMalformed, NullArgumentsAreRefused) {
    TIFF_IMG img{};
    std::vector<uint8_t> bytes = base('g', true).build();
    FILE* fp = open_bytes(bytes);
    testing::internal::CaptureStderr();
    EXPECT_EQ(read_TIFF(nullptr, &img), 1);
    EXPECT_EQ(read_TIFF(fp, nullptr), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              step("read_TIFF", "no file to read from\n") + step("read_TIFF", "no image record to read into\n"));
    std::fclose(fp);
    EXPECT_EQ(img.mono, nullptr);
}
