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

bool save(const std::string& path, const std::vector<uint8_t>& bytes) {
    FILE* fp = std::fopen(path.c_str(), "wb");
    if (fp == nullptr) return false;
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), fp) == bytes.size();
    return std::fclose(fp) == 0 && ok;
}

std::vector<uint8_t> written(char type, int width, int height) {
    TIFF_IMG img;
    if (get_TIFF(&img, height, width, type) != 0) std::exit(1);
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c) {
            if (type == 'c') {
                for (int k = 0; k < 3; ++k) img.color[k][r][c] = static_cast<unsigned char>(pixel(r, c, k));
            } else {
                img.mono[r][c] = static_cast<unsigned char>(pixel(r, c, 0));
            }
        }
    if (type == 'p') {
        for (int i = 0; i < 256; ++i)
            for (int k = 0; k < 3; ++k) img.cmap[i][k] = static_cast<unsigned char>(pixel(i, i, k));
    }
    char* data = nullptr;
    size_t size = 0;
    FILE* fp = open_memstream(&data, &size);
    if (fp == nullptr || write_TIFF(fp, &img) != 0) std::exit(1);
    std::fclose(fp);
    free_TIFF(&img);
    std::vector<uint8_t> bytes(data, data + size);
    std::free(data);
    return bytes;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s corpus-folder\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    bool ok = save(dir + "/writer_grey.tif", written('g', 5, 4)) &&
              save(dir + "/writer_rgb.tif", written('c', 3, 2));
    // The writer's palette file carries a 1536-byte colour map; the builder's
    // palette files below are as large, so one of them is enough.
    for (bool little : {true, false}) {
        const std::string order = little ? "le" : "be";
        TiffBuilder grey = TiffBuilder::image('g', 6, 5, 2, pixel);
        grey.little_endian = little;
        grey.storage = {2, 0, 1};
        TiffBuilder rgb = TiffBuilder::image('c', 3, 4, 3, pixel);
        rgb.little_endian = little;
        ok = ok && save(dir + "/grey_strips_" + order + ".tif", grey.build().bytes) &&
             save(dir + "/rgb_strips_" + order + ".tif", rgb.build().bytes);
    }
    TiffBuilder palette = TiffBuilder::image('p', 4, 3, 2, pixel);
    ok = ok && save(dir + "/palette_strips_le.tif", palette.build().bytes);
    return ok ? 0 : 1;
}
