// The pieces of the TIFF file format that the reader and the writer share:
// tag numbers, field types, the size limits of the reader, the byte order of
// a file being read, and the failure message.
#ifndef MOLO_DEBUG_TIFF_FORMAT_H
#define MOLO_DEBUG_TIFF_FORMAT_H

#include <cstdint>
#include <cstring>

namespace molo {

enum TiffTag : uint16_t {
    kTagImageWidth = 256,
    kTagImageLength = 257,
    kTagBitsPerSample = 258,
    kTagCompression = 259,
    kTagPhotometric = 262,
    kTagStripOffsets = 273,
    kTagSamplesPerPixel = 277,
    kTagRowsPerStrip = 278,
    kTagStripByteCounts = 279,
    kTagXResolution = 282,
    kTagYResolution = 283,
    kTagPlanarConfiguration = 284,
    kTagResolutionUnit = 296,
    kTagColorMap = 320,
};

enum TiffFieldType : uint16_t {
    kTypeShort = 3,
    kTypeLong = 4,
    kTypeRational = 5,
};

// Compression values a file may carry.
constexpr uint32_t kCompressionNone = 1;
constexpr uint32_t kCompressionHuffman = 2;
constexpr uint32_t kCompressionPackBits = 32773;

// Byte-order marks of the header, read as two bytes either way round.
constexpr uint16_t kOrderLittle = 0x4949;  // "II"
constexpr uint16_t kOrderBig = 0x4D4D;     // "MM"

// The reader refuses images beyond these before it allocates anything: each
// side at most 2^20 pixels and the pixel data at most 256 MiB, which keeps
// every size well inside 32 bits on every target.
constexpr uint64_t kMaxSide = uint64_t{1} << 20;
constexpr uint64_t kMaxImageBytes = uint64_t{1} << 28;

// The byte order of the file being read. Each read keeps its own, so reads
// on different threads do not disturb each other.
struct ByteOrder {
    uint16_t FileByteOrder = kOrderBig;

    static bool host_is_little() {
        const uint32_t longsequence = 0x01020304u;
        unsigned char charsequence[4];
        std::memcpy(charsequence, &longsequence, sizeof charsequence);
        return charsequence[0] == 0x04;
    }
    bool swaps() const { return (FileByteOrder == kOrderLittle) != host_is_little(); }

    // The 16- or 32-bit value stored at b in the file's order, in host order.
    uint16_t get16(const unsigned char* b) const {
        uint16_t v;
        std::memcpy(&v, b, sizeof v);
        return swaps() ? static_cast<uint16_t>((v >> 8) | (v << 8)) : v;
    }
    uint32_t get32(const unsigned char* b) const {
        uint32_t v;
        std::memcpy(&v, b, sizeof v);
        if (!swaps()) return v;
        return (v >> 24) | ((v >> 8) & 0xFF00u) | ((v << 8) & 0xFF0000u) | (v << 24);
    }
};

// Writes "tiff:  function <step>:" and then the reason to standard error;
// returns 1, the failure result, so that callers can return it directly.
int tiff_fail(const char* step, const char* reason_format, ...)
    __attribute__((format(printf, 2, 3)));

}  // namespace molo

#endif  // MOLO_DEBUG_TIFF_FORMAT_H
