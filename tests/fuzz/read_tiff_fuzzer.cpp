// Feeds arbitrary bytes to the TIFF reader as a file. Any image it accepts
// must be whole: a known type, positive sizes, every plane present to its
// last byte; and writing it and reading it back must give the same pixels.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "debug/tiff_memory.h"
#include "molo/debug.h"

namespace {

volatile unsigned g_sink;  // keeps the probing reads of each plane

void require(bool ok, const char* what) {
    if (!ok) {
        std::fprintf(stderr, "read_tiff_fuzzer: %s\n", what);
        std::abort();
    }
}

int read_from(std::vector<uint8_t>& bytes, TIFF_IMG* img) {
    FILE* fp = open_bytes(bytes);
    require(fp != nullptr, "fmemopen failed");
    const int rc = read_TIFF(fp, img);
    std::fclose(fp);
    return rc;
}

std::vector<unsigned char**> planes_of(const TIFF_IMG& img) {
    if (img.TIFF_type == 'c') return {img.color[0], img.color[1], img.color[2]};
    return {img.mono};
}

void check_whole(const TIFF_IMG& img) {
    require(img.TIFF_type == 'g' || img.TIFF_type == 'p' || img.TIFF_type == 'c',
            "unknown image type");
    require(img.height > 0 && img.width > 0, "empty image");
    require(img.compress_type == 'u', "compressed image");
    require((img.cmap != nullptr) == (img.TIFF_type == 'p'),
            "palette present without a palette type");
    unsigned sum = 0;
    for (unsigned char** plane : planes_of(img)) {
        require(plane != nullptr, "missing plane");
        sum +=
            plane[0][0] + plane[img.height - 1][img.width - 1];  // the sanitizer checks the extent
    }
    if (img.cmap != nullptr) sum += img.cmap[255][2];
    g_sink = sum;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> bytes(data, data + size);
    TIFF_IMG img;
    std::memset(&img, 0, sizeof img);
    const int rc = read_from(bytes, &img);
    require(rc == 0 || rc == 1, "result neither 0 nor 1");
    if (rc != 0) return 0;
    check_whole(img);

    std::vector<uint8_t> again;
    require(write_bytes(img, again) == 0, "an image read could not be written");
    free_TIFF(&img);
    const FlatImage first = read_flat(bytes), back = read_flat(again);
    require(back.type != 0, "a written image could not be read back");
    require(back.type == first.type && back.height == first.height && back.width == first.width &&
                std::equal(first.plane, first.plane + 3, back.plane) && back.cmap == first.cmap,
            "pixels changed through writing and reading");
    return 0;
}
