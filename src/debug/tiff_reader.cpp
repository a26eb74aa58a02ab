// Reads the first image of an uncompressed TIFF file into a new TIFF_IMG.
//
// The file is untrusted. Every offset and count it names is checked against
// the file's length, and every size is formed in 64 bits and checked against
// the reader's limits, before anything is allocated or read; strips are read
// from their own offsets, in any order the file stores them. A file the
// reader cannot take is refused with a message and the record is left as it
// was: the image is built in a local record and handed over only when whole.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "debug/diagnostics.h"
#include "debug/tiff_format.h"
#include "molo/debug.h"

namespace {

using molo::print_diagnostic;
using molo::tiff_fail;

// The directory entries the reader uses.
enum Slot {
    kWidth,
    kLength,
    kBits,
    kCompression,
    kPhotometric,
    kOffsets,
    kSamples,
    kRows,
    kCounts,
    kPlanar,
    kColorMap,
    kSlots
};

struct Entry {
    bool present = false;
    uint16_t type = 0;
    uint32_t count = 0;
    unsigned char value[4] = {};  // the value itself, or the offset of the values
};

struct Source {
    FILE* fp;
    uint64_t length;  // bytes in the file
    molo::ByteOrder order;
    Entry entries[kSlots];
    uint32_t next_directory = 0;
};

int slot_of(uint16_t tag) {
    switch (tag) {
        case molo::kTagImageWidth: return kWidth;
        case molo::kTagImageLength: return kLength;
        case molo::kTagBitsPerSample: return kBits;
        case molo::kTagCompression: return kCompression;
        case molo::kTagPhotometric: return kPhotometric;
        case molo::kTagStripOffsets: return kOffsets;
        case molo::kTagSamplesPerPixel: return kSamples;
        case molo::kTagRowsPerStrip: return kRows;
        case molo::kTagStripByteCounts: return kCounts;
        case molo::kTagPlanarConfiguration: return kPlanar;
        case molo::kTagColorMap: return kColorMap;
        default: return -1;
    }
}

// Sizes and positions may be SHORT or LONG; the other fields are SHORT.
bool type_fits(int slot, uint16_t type) {
    switch (slot) {
        case kWidth:
        case kLength:
        case kOffsets:
        case kRows:
        case kCounts: return type == molo::kTypeShort || type == molo::kTypeLong;
        default: return type == molo::kTypeShort;
    }
}

const uint16_t kSlotTag[kSlots] = {
    molo::kTagImageWidth,          molo::kTagImageLength,  molo::kTagBitsPerSample,
    molo::kTagCompression,         molo::kTagPhotometric,  molo::kTagStripOffsets,
    molo::kTagSamplesPerPixel,     molo::kTagRowsPerStrip, molo::kTagStripByteCounts,
    molo::kTagPlanarConfiguration, molo::kTagColorMap};

bool read_bytes(Source& in, unsigned char* b, size_t n) { return std::fread(b, 1, n, in.fp) == n; }

bool read16(Source& in, uint32_t& v) {
    unsigned char b[2];
    if (!read_bytes(in, b, 2)) return false;
    v = in.order.get16(b);
    return true;
}

bool read32(Source& in, uint32_t& v) {
    unsigned char b[4];
    if (!read_bytes(in, b, 4)) return false;
    v = in.order.get32(b);
    return true;
}

// Seeks to an offset the file holds; fseek takes a long, which the length
// (itself from ftell) bounds.
bool seek_to(Source& in, uint64_t offset) {
    return offset <= in.length && std::fseek(in.fp, static_cast<long>(offset), SEEK_SET) == 0;
}

bool lies_in_file(const Source& in, uint64_t offset, uint64_t bytes) {
    return offset <= in.length && bytes <= in.length - offset;
}

int read_header(Source& in, uint32_t& directory) {
    if (std::fseek(in.fp, 0, SEEK_END) != 0) {
        return tiff_fail("ReadHeader", "can't find the length of the file\n");
    }
    const long length = std::ftell(in.fp);
    if (length < 0 || std::fseek(in.fp, 0, SEEK_SET) != 0) {
        return tiff_fail("ReadHeader", "can't find the length of the file\n");
    }
    in.length = static_cast<uint64_t>(length);

    unsigned char mark[2];
    if (!read_bytes(in, mark, 2)) {
        return tiff_fail("ReadHeader",
                         "error reading unsigned short\nerror reading image header\n");
    }
    const uint16_t order = static_cast<uint16_t>(mark[0] << 8 | mark[1]);
    if (order != molo::kOrderLittle && order != molo::kOrderBig) return 1;
    in.order.FileByteOrder = order;
    uint32_t magic;
    if (!read16(in, magic)) {
        return tiff_fail("ReadHeader",
                         "error reading unsigned short\nerror reading image header\n");
    }
    if (magic != 42) return 1;
    if (!read32(in, directory)) {
        return tiff_fail("ReadHeader", "error reading unsigned int\nerror reading image header\n");
    }
    return 0;
}

// Reads the entries the reader uses from the first directory, and the offset
// of the directory after it.
int read_directory(Source& in, uint32_t directory) {
    if (!seek_to(in, directory)) {
        return tiff_fail("ReadIFD", "IFD offset %lu lies beyond the end of the file\n",
                         static_cast<unsigned long>(directory));
    }
    uint32_t n;
    if (!read16(in, n)) return tiff_fail("ReadIFD", "error reading number of fields for IFD\n");
    uint32_t previous_tag = 0;
    for (uint32_t i = 0; i < n; ++i) {
        uint32_t tag, type, count;
        unsigned char value[4];
        if (!read16(in, tag)) return tiff_fail("ReadIFD", "error reading tag\n");
        if (!read16(in, type)) return tiff_fail("ReadIFD", "error reading field type\n");
        if (!read32(in, count)) return tiff_fail("ReadIFD", "error reading field count");
        if (!read_bytes(in, value, 4)) return tiff_fail("ReadIFD", "error reading field value\n");
        if (i > 0 && tag == previous_tag) {
            return tiff_fail("ReadIFD", "tag %u appears more than once in IFD\n", tag);
        }
        if (i > 0 && tag < previous_tag) {
            return tiff_fail("ReadIFD", "tag %u follows tag %u; tags in IFD must ascend\n", tag,
                             previous_tag);
        }
        previous_tag = tag;
        if (count == 0) return tiff_fail("ReadIFD", "encountered 0 as field count");
        const int slot = slot_of(static_cast<uint16_t>(tag));
        if (slot < 0) continue;
        if (!type_fits(slot, static_cast<uint16_t>(type))) {
            tiff_fail("ReadIFD", "field type %u does not fit tag %u;\nfield will be ignored\n",
                      type, tag);
            continue;
        }
        Entry& e = in.entries[slot];
        e.present = true;
        e.type = static_cast<uint16_t>(type);
        e.count = count;
        std::copy(value, value + 4, e.value);
    }
    if (!read32(in, in.next_directory))
        return tiff_fail("ReadIFD", "error reading offset of next IFD\n");
    return 0;
}

int check_core_fields(Source& in) {
    for (int slot : {kWidth, kLength, kCompression, kPhotometric, kOffsets, kCounts}) {
        if (!in.entries[slot].present) {
            print_diagnostic(
                "tiff reader:  function CheckForCoreFields:\n"
                "field for tag %d does not appear\n"
                "in IFD (and has no default)\n",
                kSlotTag[slot]);
            return 1;
        }
    }
    return 0;
}

// Reads the count values of an entry (inline or at its offset) into out.
int read_values(Source& in, int slot, uint32_t* out, uint32_t count, const char* step) {
    const Entry& e = in.entries[slot];
    const uint64_t size = e.type == molo::kTypeShort ? 2 : 4;
    const uint64_t bytes = size * count;
    if (bytes <= 4) {
        for (uint32_t i = 0; i < count; ++i) {
            out[i] = size == 2 ? in.order.get16(e.value + 2 * i) : in.order.get32(e.value);
        }
        return 0;
    }
    const uint64_t offset = in.order.get32(e.value);
    if (!lies_in_file(in, offset, bytes) || !seek_to(in, offset)) {
        return tiff_fail(step, "values of tag %d lie beyond the end of the file\n", kSlotTag[slot]);
    }
    unsigned char chunk[512];
    for (uint32_t done = 0; done < count;) {
        const uint32_t now =
            static_cast<uint32_t>(std::min<uint64_t>(count - done, sizeof chunk / size));
        if (!read_bytes(in, chunk, now * size)) {
            return tiff_fail(step, "error reading values of tag %d\n", kSlotTag[slot]);
        }
        for (uint32_t i = 0; i < now; ++i) {
            out[done + i] =
                size == 2 ? in.order.get16(chunk + 2 * i) : in.order.get32(chunk + 4 * i);
        }
        done += now;
    }
    return 0;
}

// The single value of a field that holds one, or its default when absent.
int read_scalar(Source& in, int slot, uint32_t fallback, uint32_t& v, const char* step) {
    const Entry& e = in.entries[slot];
    if (!e.present) {
        v = fallback;
        return 0;
    }
    if (e.count != 1) {
        return tiff_fail(step, "field for tag %d holds %lu values; 1 expected\n", kSlotTag[slot],
                         static_cast<unsigned long>(e.count));
    }
    return read_values(in, slot, &v, 1, step);
}

int check_compression(Source& in) {
    uint32_t compression;
    if (read_scalar(in, kCompression, 0, compression, "GetCompression") != 0) return 1;
    switch (compression) {
        case molo::kCompressionNone: return 0;
        case molo::kCompressionPackBits:
            return tiff_fail("GetCompression", "PackBits compression not supported\n");
        case molo::kCompressionHuffman:
            return tiff_fail("GetCompression", "1-D modified Huffman compression not supported\n");
        default:
            return tiff_fail("GetCompression",
                             "Compression value %d not recognized; could not assign\n"
                             "compress_type to TIFF_IMG structure\n",
                             static_cast<int>(compression));
    }
}

// 'g', 'p' or 'c' from the photometric interpretation and the samples; then
// 8 bits per sample, one plane of interleaved samples, and for a palette a
// colour map of 3 x 256 entries, whose 16-bit values are kept as their high
// bytes in palette.
int get_image_type(Source& in, char& type, uint32_t* palette) {
    uint32_t photometric, samples, planar;
    if (read_scalar(in, kPhotometric, 0, photometric, "GetImageType") != 0 ||
        read_scalar(in, kSamples, 1, samples, "GetImageType") != 0 ||
        read_scalar(in, kPlanar, 1, planar, "GetImageType") != 0) {
        return 1;
    }
    if (photometric == 1 && samples == 1) {
        type = 'g';
    } else if (photometric == 3 && samples == 1) {
        type = 'p';
    } else if (photometric == 2 && samples == 3) {
        type = 'c';
    } else {
        return tiff_fail("GetImageType", "can't infer image type from IFD\n");
    }
    if (samples > 1 && planar != 1) {
        return tiff_fail("GetImageType", "PlanarConfiguration %u is not supported by this reader\n",
                         planar);
    }

    uint32_t bits[3] = {1, 1, 1};  // one bit per sample when the field is absent
    const Entry& b = in.entries[kBits];
    if (b.present) {
        if (b.count != 1 && b.count != samples) {
            return tiff_fail("GetImageType", "field for tag %d holds %lu values for %u samples\n",
                             molo::kTagBitsPerSample, static_cast<unsigned long>(b.count), samples);
        }
        if (read_values(in, kBits, bits, b.count, "GetImageType") != 0) return 1;
    }
    for (uint32_t i = 0; i < (b.present ? b.count : 1); ++i) {
        if (bits[i] != 8) {
            return tiff_fail("GetImageType",
                             "data is stored at %u bits per sample, which\n"
                             "is not supported by this reader\n",
                             bits[i]);
        }
    }

    if (type == 'p') {
        const Entry& map = in.entries[kColorMap];
        if (!map.present || map.count != 768) {
            return tiff_fail("GetImageType", "unexpected number of entries in colormap\n");
        }
        if (read_values(in, kColorMap, palette, 768, "GetImageType") != 0) return 1;
    }
    return 0;
}

struct Strips {
    uint64_t rows_per_strip = 0;
    uint64_t count = 0;
    uint32_t* offsets = nullptr;
    uint32_t* bytes = nullptr;
    ~Strips() {
        std::free(offsets);
        std::free(bytes);
    }
};

// Reads and checks the strip table: one offset and one byte count per strip,
// each strip wholly inside the file and long enough for its rows.
int get_strips(Source& in, uint64_t height, uint64_t bytes_per_row, Strips& s) {
    uint32_t rows;
    // Without RowsPerStrip the whole image is one strip.
    if (read_scalar(in, kRows, UINT32_MAX, rows, "GetStrips") != 0) return 1;
    if (rows == 0) return tiff_fail("GetStrips", "RowsPerStrip is 0\n");
    s.rows_per_strip = std::min<uint64_t>(rows, height);
    s.count = (height + s.rows_per_strip - 1) / s.rows_per_strip;
    for (int slot : {kOffsets, kCounts}) {
        if (in.entries[slot].count != s.count) {
            return tiff_fail("GetStrips", "field for tag %d holds %lu values for %lu strips\n",
                             kSlotTag[slot], static_cast<unsigned long>(in.entries[slot].count),
                             static_cast<unsigned long>(s.count));
        }
    }
    for (int slot : {kOffsets, kCounts}) {
        const Entry& e = in.entries[slot];
        const uint64_t bytes = uint64_t{e.type == molo::kTypeShort ? 2u : 4u} * e.count;
        if (bytes > 4 && !lies_in_file(in, in.order.get32(e.value), bytes)) {
            return tiff_fail("GetStrips", "values of tag %d lie beyond the end of the file\n",
                             kSlotTag[slot]);
        }
    }
    s.offsets = static_cast<uint32_t*>(std::calloc(s.count, sizeof(uint32_t)));
    s.bytes = static_cast<uint32_t*>(std::calloc(s.count, sizeof(uint32_t)));
    if (s.offsets == nullptr || s.bytes == nullptr) {
        return tiff_fail("GetStrips", "couldn't allocate the table of %lu strips\n",
                         static_cast<unsigned long>(s.count));
    }
    const uint32_t n = static_cast<uint32_t>(s.count);
    if (read_values(in, kOffsets, s.offsets, n, "GetStrips") != 0 ||
        read_values(in, kCounts, s.bytes, n, "GetStrips") != 0) {
        return 1;
    }
    for (uint32_t i = 0; i < n; ++i) {
        const uint64_t needed =
            std::min(s.rows_per_strip, height - i * s.rows_per_strip) * bytes_per_row;
        if (s.bytes[i] < needed) {
            return tiff_fail("GetStrips", "strip number %lu holds %lu bytes; its rows need %llu\n",
                             static_cast<unsigned long>(i), static_cast<unsigned long>(s.bytes[i]),
                             static_cast<unsigned long long>(needed));
        }
        if (!lies_in_file(in, s.offsets[i], s.bytes[i])) {
            return tiff_fail("GetStrips", "strip number %lu lies beyond the end of the file\n",
                             static_cast<unsigned long>(i));
        }
    }
    return 0;
}

// Reads strip i at its own offset and unpacks its rows into the planes.
bool read_strip(Source& in, const Strips& s, uint32_t i, TIFF_IMG& img) {
    if (!seek_to(in, s.offsets[i])) return false;
    const size_t width = static_cast<size_t>(img.width);
    const uint64_t first = i * s.rows_per_strip;
    const uint64_t last =
        std::min<uint64_t>(first + s.rows_per_strip, static_cast<uint64_t>(img.height));
    unsigned char chunk[3 * 1024];
    for (uint64_t r = first; r < last; ++r) {
        if (img.TIFF_type != 'c') {
            if (!read_bytes(in, img.mono[r], width)) return false;
            continue;
        }
        for (size_t c0 = 0; c0 < width; c0 += 1024) {
            const size_t pixels = std::min<size_t>(1024, width - c0);
            if (!read_bytes(in, chunk, 3 * pixels)) return false;
            for (size_t c = 0; c < pixels; ++c) {
                for (int k = 0; k < 3; ++k) img.color[k][r][c0 + c] = chunk[3 * c + k];
            }
        }
    }
    return true;
}

}  // namespace

int read_TIFF(FILE* fp, TIFF_IMG* img) {
    if (fp == nullptr) return tiff_fail("read_TIFF", "no file to read from\n");
    if (img == nullptr) return tiff_fail("read_TIFF", "no image record to read into\n");

    Source in{fp, 0, {}, {}, 0};
    uint32_t directory;
    if (read_header(in, directory) != 0 || read_directory(in, directory) != 0 ||
        check_core_fields(in) != 0 || check_compression(in) != 0) {
        return 1;
    }
    char type = 0;
    uint32_t palette[768];
    if (get_image_type(in, type, palette) != 0) return 1;

    uint32_t width, height;
    if (read_scalar(in, kWidth, 0, width, "GetImageSize") != 0 ||
        read_scalar(in, kLength, 0, height, "GetImageSize") != 0) {
        return 1;
    }
    if (width < 1 || height < 1)
        return tiff_fail("GetImageSize", "image dimension is less than 1\n");
    const uint64_t bytes_per_row = uint64_t{width} * (type == 'c' ? 3 : 1);
    if (width > molo::kMaxSide || height > molo::kMaxSide ||
        bytes_per_row * height > molo::kMaxImageBytes) {
        return tiff_fail("GetImageSize",
                         "image of %lu x %lu pixels is larger than this reader accepts\n",
                         static_cast<unsigned long>(height), static_cast<unsigned long>(width));
    }
    Strips strips;
    if (get_strips(in, height, bytes_per_row, strips) != 0) return 1;

    TIFF_IMG out{};
    if (get_TIFF(&out, static_cast<int>(height), static_cast<int>(width), type) != 0) return 1;
    if (type == 'p') {
        for (int i = 0; i < 768; ++i)
            out.cmap[i % 256][i / 256] = static_cast<unsigned char>(palette[i] >> 8);
    }
    for (uint32_t i = 0; i < strips.count; ++i) {
        if (!read_strip(in, strips, i, out)) {
            free_TIFF(&out);
            return tiff_fail("ReadStrip", "error reading strip number %ld\n", static_cast<long>(i));
        }
    }
    if (in.next_directory != 0) {
        print_diagnostic(
            "WARNING:  this TIFF file contains multiple images;\n"
            "all but the first image will be ignored by the TIFF reader\n");
    }
    *img = out;
    return 0;
}
