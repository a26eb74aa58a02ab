// Writes the seed corpus of the TIFF reader's fuzzer into the folder given:
// small grey, RGB and palette files in both byte orders, in one and several
// strips (stored out of order in some), from the library's own writer (big
// endian) and from the tests' TIFF builder (either order).
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "debug/tiff_builder.h"
#include "molo/debug.h"

namespace {

int pixel(int r, int c, int k) { return (r * 37 + c * 11 + k * 85) & 255; }

std::vector<uint8_t> written(char type, int width, int height) {
    TIFF_IMG img;
    std::vector<uint8_t> bytes;
    if (make_image(img, type, width, height, pixel) != 0 || write_bytes(img, bytes) != 0) std::exit(1);
    free_TIFF(&img);
    return bytes;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s corpus-folder\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    bool ok = save_file(dir + "/writer_grey.tif", written('g', 5, 4)) &&
              save_file(dir + "/writer_rgb.tif", written('c', 3, 2));
    // The writer's palette file carries a 1536-byte colour map; the builder's
    // palette files below are as large, so one of them is enough.
    for (bool little : {true, false}) {
        const std::string order = little ? "le" : "be";
        TiffBuilder grey = TiffBuilder::image('g', 6, 5, 2, pixel);
        grey.little_endian = little;
        grey.storage = {2, 0, 1};
        TiffBuilder rgb = TiffBuilder::image('c', 3, 4, 3, pixel);
        rgb.little_endian = little;
        ok = ok && save_file(dir + "/grey_strips_" + order + ".tif", grey.build()) &&
             save_file(dir + "/rgb_strips_" + order + ".tif", rgb.build());
    }
    TiffBuilder palette = TiffBuilder::image('p', 4, 3, 2, pixel);
    ok = ok && save_file(dir + "/palette_strips_le.tif", palette.build());
    return ok ? 0 : 1;
}
