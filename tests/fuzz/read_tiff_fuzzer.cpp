// Feeds arbitrary bytes to the TIFF reader as a file. Any image it accepts
// must be whole: a known type, positive sizes, every plane present to its
// last byte; and writing it and reading it back must give the same pixels.
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

bool same_pixels(const TIFF_IMG& a, const TIFF_IMG& b) {
    if (a.TIFF_type != b.TIFF_type || a.height != b.height || a.width != b.width) return false;
    const std::vector<unsigned char**> pa = planes_of(a), pb = planes_of(b);
    const size_t bytes = static_cast<size_t>(a.height) * static_cast<size_t>(a.width);
    for (size_t i = 0; i < pa.size(); ++i) {
        if (std::memcmp(pa[i][0], pb[i][0], bytes) != 0) return false;
    }
    return a.cmap == nullptr || std::memcmp(a.cmap[0], b.cmap[0], 768) == 0;
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
    TIFF_IMG back;
    std::memset(&back, 0, sizeof back);
    require(read_from(again, &back) == 0, "a written image could not be read back");
    require(same_pixels(img, back), "pixels changed through writing and reading");
    free_TIFF(&back);
    free_TIFF(&img);
    return 0;
}
