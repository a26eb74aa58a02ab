// Writes a TIFF_IMG record as one uncompressed, big-endian TIFF image.
//
// The file is written front to back without seeking: the 8-byte header, the
// strips from offset 8, a pad byte when the strip data ends on an odd offset,
// then the image file directory (entry count, entries in tag order, the
// next-directory offset 0) and, right after it, the values too long to stand
// in their entries, in the order of their entries. Every size is known before
// the first byte is written, so the header can name the directory offset.
#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "debug/tiff_format.h"
#include "molo/debug.h"

namespace {

using molo::tiff_fail;

// A strip is at least this many bytes, unless one row is longer.
constexpr uint64_t kStripBytes = 8000;

struct Layout {
    uint64_t bytes_per_row;
    uint64_t rows_per_strip;
    uint64_t strips;
    uint64_t directory;  // offset of the image file directory
};

// How a field's values are produced.
enum class Values { Same, StripOffset, StripByteCount, Palette };

struct Field {
    uint16_t tag;
    uint16_t type;
    uint32_t count;
    Values values;
    uint32_t value;  // the value of a Same field
};

int write_ushort(FILE* fp, uint32_t v) {
    const unsigned char b[2] = {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
    if (std::fwrite(b, 1, 2, fp) != 2)
        return tiff_fail("WriteUShort", "error writing unsigned short\n");
    return 0;
}

int write_uint(FILE* fp, uint32_t v) {
    const unsigned char b[4] = {static_cast<unsigned char>(v >> 24),
                                static_cast<unsigned char>(v >> 16),
                                static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
    if (std::fwrite(b, 1, 4, fp) != 4)
        return tiff_fail("WriteUInt", "error writing unsigned int\n");
    return 0;
}

int write_uchar(FILE* fp, unsigned char v) {
    if (std::fputc(v, fp) == EOF) return tiff_fail("WriteUChar", "error writing unsigned char\n");
    return 0;
}

int write_rational(FILE* fp, uint32_t numerator, uint32_t denominator) {
    const unsigned char b[8] = {static_cast<unsigned char>(numerator >> 24),
                                static_cast<unsigned char>(numerator >> 16),
                                static_cast<unsigned char>(numerator >> 8),
                                static_cast<unsigned char>(numerator),
                                static_cast<unsigned char>(denominator >> 24),
                                static_cast<unsigned char>(denominator >> 16),
                                static_cast<unsigned char>(denominator >> 8),
                                static_cast<unsigned char>(denominator)};
    if (std::fwrite(b, 1, 8, fp) != 8)
        return tiff_fail("WriteRational", "error writing rational number\n");
    return 0;
}

uint32_t type_size(uint16_t type) {
    switch (type) {
        case molo::kTypeShort: return 2;
        case molo::kTypeLong: return 4;
        case molo::kTypeRational: return 8;
        default: return 0;
    }
}

uint64_t value_bytes(const Field& f) { return uint64_t{type_size(f.type)} * f.count; }

uint64_t rows_in_strip(const Layout& l, uint64_t strip, uint64_t height) {
    return std::min(l.rows_per_strip, height - strip * l.rows_per_strip);
}

uint32_t value_at(const Field& f, uint32_t i, const Layout& l, const TIFF_IMG* img) {
    switch (f.values) {
        case Values::StripOffset:
            return static_cast<uint32_t>(8 + i * l.rows_per_strip * l.bytes_per_row);
        case Values::StripByteCount:
            return static_cast<uint32_t>(rows_in_strip(l, i, img->height) * l.bytes_per_row);
        case Values::Palette:
            // 256 reds, 256 greens, 256 blues, each byte spread over 16 bits.
            return img->cmap[i % 256][i / 256] * 257u;
        case Values::Same: break;
    }
    return f.value;
}

int write_values(FILE* fp, const Field& f, const Layout& l, const TIFF_IMG* img) {
    for (uint32_t i = 0; i < f.count; ++i) {
        const uint32_t v = value_at(f, i, l, img);
        int rc;
        switch (f.type) {
            case molo::kTypeShort: rc = write_ushort(fp, v); break;
            case molo::kTypeLong: rc = write_uint(fp, v); break;
            case molo::kTypeRational: rc = write_rational(fp, v, 1); break;
            default: return tiff_fail("WriteField", "field type %d is not supported\n", f.type);
        }
        if (rc != 0) return rc;
    }
    return 0;
}

uint16_t short_or_long(uint64_t v) { return v < 65536 ? molo::kTypeShort : molo::kTypeLong; }

int samples_per_pixel(char type) {
    switch (type) {
        case 'g':
        case 'p': return 1;
        case 'c': return 3;
        case '4': return 4;
        default: return 0;
    }
}

uint32_t photometric(char type) {
    switch (type) {
        case 'g': return 1;
        case 'p': return 3;
        case 'c': return 2;
        default: return 5;  // '4'
    }
}

// The directory's entries in ascending tag order; returns their number.
int make_fields(const TIFF_IMG* img, const Layout& l, Field* fields) {
    int n = 0;
    const auto add = [&](uint16_t tag, uint16_t type, uint64_t count, Values values,
                         uint32_t value) {
        fields[n++] = Field{tag, type, static_cast<uint32_t>(count), values, value};
    };
    const int samples = samples_per_pixel(img->TIFF_type);
    const uint64_t first_strip_bytes = rows_in_strip(l, 0, img->height) * l.bytes_per_row;
    add(molo::kTagImageWidth, short_or_long(img->width), 1, Values::Same, img->width);
    add(molo::kTagImageLength, short_or_long(img->height), 1, Values::Same, img->height);
    add(molo::kTagCompression, molo::kTypeShort, 1, Values::Same, molo::kCompressionNone);
    add(molo::kTagPhotometric, molo::kTypeShort, 1, Values::Same, photometric(img->TIFF_type));
    add(molo::kTagStripOffsets, molo::kTypeLong, l.strips, Values::StripOffset, 0);
    add(molo::kTagRowsPerStrip, short_or_long(l.rows_per_strip), 1, Values::Same,
        static_cast<uint32_t>(l.rows_per_strip));
    add(molo::kTagStripByteCounts, short_or_long(first_strip_bytes), l.strips,
        Values::StripByteCount, 0);
    add(molo::kTagXResolution, molo::kTypeRational, 1, Values::Same, 100);
    add(molo::kTagYResolution, molo::kTypeRational, 1, Values::Same, 100);
    add(molo::kTagResolutionUnit, molo::kTypeShort, 1, Values::Same, 2);
    if (img->TIFF_type == 'p') add(molo::kTagColorMap, molo::kTypeShort, 768, Values::Palette, 0);
    if (samples > 1) add(molo::kTagSamplesPerPixel, molo::kTypeShort, 1, Values::Same, samples);
    add(molo::kTagBitsPerSample, molo::kTypeShort, samples, Values::Same, 8);
    std::sort(fields, fields + n, [](const Field& a, const Field& b) { return a.tag < b.tag; });
    return n;
}

// Packs strip s row by row (samples of a pixel together) and writes it.
int write_strip(FILE* fp, const TIFF_IMG* img, const Layout& l, uint64_t s) {
    const size_t width = static_cast<size_t>(img->width);
    const uint64_t first = s * l.rows_per_strip;
    const uint64_t rows = rows_in_strip(l, s, img->height);
    unsigned char pack[4096];
    for (uint64_t r = first; r < first + rows; ++r) {
        if (img->TIFF_type == 'g' || img->TIFF_type == 'p') {
            if (std::fwrite(img->mono[r], 1, width, fp) != width) {
                return tiff_fail("WriteStrip", "error writing strip number %ld\n",
                                 static_cast<long>(s));
            }
            continue;
        }
        const unsigned char* planes[4] = {img->color[0][r], img->color[1][r], img->color[2][r],
                                          img->TIFF_type == '4' ? img->mono[r] : nullptr};
        const size_t samples = img->TIFF_type == '4' ? 4 : 3;
        const size_t chunk = sizeof pack / samples;
        for (size_t c0 = 0; c0 < width; c0 += chunk) {
            const size_t pixels = std::min(chunk, width - c0);
            for (size_t c = 0; c < pixels; ++c) {
                for (size_t k = 0; k < samples; ++k) pack[c * samples + k] = planes[k][c0 + c];
            }
            if (std::fwrite(pack, 1, pixels * samples, fp) != pixels * samples) {
                return tiff_fail("WriteStrip", "error writing strip number %ld\n",
                                 static_cast<long>(s));
            }
        }
    }
    return 0;
}

}  // namespace

int write_TIFF(FILE* fp, TIFF_IMG* img) {
    if (fp == nullptr) return tiff_fail("write_TIFF", "no file to write to\n");
    if (img == nullptr) return tiff_fail("write_TIFF", "no image record to write\n");

    const int samples = samples_per_pixel(img->TIFF_type);
    if (samples == 0) {
        return tiff_fail("GetBytesPerRow",
                         "writer is not prepared to compute bytes_per_row\n"
                         "for image of TIFF_type '%c'\n",
                         img->TIFF_type);
    }
    if (img->height <= 0) {
        return tiff_fail("GetRowsPerStrip",
                         "height entry in TIFF image structure\n"
                         "claims that image height is not positive\n");
    }
    if (img->width <= 0) return tiff_fail("GetRowsPerStrip", "image dimension is less than 1\n");
    if (img->compress_type != 'u') {
        return tiff_fail("WriteStrip",
                         "TIFF writer not prepared to compress data\n"
                         "with compress_type %c\n",
                         img->compress_type);
    }
    const bool has_colour = img->color[0] && img->color[1] && img->color[2];
    const bool has_planes = img->TIFF_type == 'g'   ? img->mono != nullptr
                            : img->TIFF_type == 'p' ? img->mono && img->cmap
                            : img->TIFF_type == 'c' ? has_colour
                                                    : has_colour && img->mono;
    if (!has_planes) return tiff_fail("write_TIFF", "image record has no planes\n");

    Layout l{};
    const uint64_t height = static_cast<uint64_t>(img->height);
    l.bytes_per_row = static_cast<uint64_t>(img->width) * samples;
    if (l.bytes_per_row >= kStripBytes) {
        l.rows_per_strip = 1;
    } else {
        l.rows_per_strip = std::min(
            std::max<uint64_t>(2, (kStripBytes + l.bytes_per_row - 1) / l.bytes_per_row), height);
    }
    l.strips = (height + l.rows_per_strip - 1) / l.rows_per_strip;
    const uint64_t strip_end = 8 + height * l.bytes_per_row;
    l.directory = strip_end + (strip_end & 1);

    Field fields[13];
    const int n = make_fields(img, l, fields);
    // Long values follow the directory's entries and its next-directory offset.
    uint64_t next_value = l.directory + 2 + 12 * static_cast<uint64_t>(n) + 4;
    uint64_t value_offset[13];
    for (int i = 0; i < n; ++i) {
        value_offset[i] = next_value;
        if (value_bytes(fields[i]) > 4) next_value += (value_bytes(fields[i]) + 1) & ~uint64_t{1};
    }
    if (next_value > UINT32_MAX) {
        return tiff_fail("write_TIFF", "image of %d x %d pixels does not fit in a TIFF file\n",
                         img->height, img->width);
    }

    // Header: byte order, 42, directory offset.
    if (write_uchar(fp, 'M') || write_uchar(fp, 'M') || write_ushort(fp, 42) ||
        write_uint(fp, static_cast<uint32_t>(l.directory))) {
        return 1;
    }
    for (uint64_t s = 0; s < l.strips; ++s) {
        if (write_strip(fp, img, l, s) != 0) return 1;
    }
    if (strip_end & 1) {
        if (write_uchar(fp, 0) != 0) return 1;
    }

    if (write_ushort(fp, static_cast<uint32_t>(n)) != 0) return 1;
    for (int i = 0; i < n; ++i) {
        const Field& f = fields[i];
        if (write_ushort(fp, f.tag) || write_ushort(fp, f.type) || write_uint(fp, f.count))
            return 1;
        if (value_bytes(f) > 4) {
            if (write_uint(fp, static_cast<uint32_t>(value_offset[i])) != 0) return 1;
            continue;
        }
        // Short values stand left-justified in the entry's four bytes.
        if (write_values(fp, f, l, img) != 0) return 1;
        for (uint64_t pad = value_bytes(f); pad < 4; ++pad) {
            if (write_uchar(fp, 0) != 0) return 1;
        }
    }
    if (write_uint(fp, 0) != 0) return 1;
    for (int i = 0; i < n; ++i) {
        if (value_bytes(fields[i]) <= 4) continue;
        if (write_values(fp, fields[i], l, img) != 0) return 1;
        if (value_bytes(fields[i]) & 1) {
            if (write_uchar(fp, 0) != 0) return 1;
        }
    }
    return std::fflush(fp) == 0 ? 0 : tiff_fail("write_TIFF", "error writing the file\n");
}
