// Command-line front end to the debug TIFF functions, so that a script can
// check the files against other TIFF readers and writers.
//
//   tiff_interop_driver write <g|c|p> <width> <height> <out.tif>
//       A test image through get_TIFF / write_TIFF. Sample k (0 for grey and
//       palette indices; 0, 1, 2 for R, G, B) of pixel (r, c) is
//       (31 r + 7 c + 97 k + (r c) % 13) % 256; palette entry i is
//       (i, 255 - i, 7 i % 256).
//   tiff_interop_driver dump yuv2rgb <width> <height> <in.raw> <out.tif>
//       TIFF_Save_YUV2RGB on one NV21 buffer (width * height luma bytes,
//       then width * (height / 2) chroma).
//   tiff_interop_driver read <in.tif> <out.raw>
//       read_TIFF; prints "<type> <width> <height>" and writes the planes one
//       after the other (mono; or R, G, B), then a palette's 768 bytes.
//   tiff_interop_driver ready <width> <height> <in.tif> <out.raw>
//   tiff_interop_driver readyuv <width> <height> <in.tif> <out.raw>
//       TIFF_readY / TIFF_readYUV into zeroed buffers, written out as they
//       stand afterwards (luma, then NV21 chroma).
//
// The exit status is the library call's result (0 or 1); 2 for bad usage or
// a file the driver itself cannot handle.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "debug/tiff_builder.h"
#include "molo/debug.h"

namespace {

int usage() {
    std::fprintf(stderr,
                 "usage: tiff_interop_driver write <g|c|p> W H out.tif\n"
                 "       tiff_interop_driver dump yuv2rgb W H in.raw out.tif\n"
                 "       tiff_interop_driver read in.tif out.raw\n"
                 "       tiff_interop_driver ready|readyuv W H in.tif out.raw\n");
    return 2;
}

unsigned char sample(int r, int c, int k) {
    return static_cast<unsigned char>((31 * r + 7 * c + 97 * k + (r * c) % 13) % 256);
}

bool load(const char* path, std::vector<unsigned char>& data) {
    FILE* f = std::fopen(path, "rb");
    if (f == nullptr) return false;
    bool ok = std::fread(data.data(), 1, data.size(), f) == data.size();
    std::fclose(f);
    return ok;
}

int write_image(char type, int width, int height, const char* path) {
    TIFF_IMG img;
    if (make_image(img, type, width, height, sample) != 0) return 1;
    std::vector<uint8_t> bytes;
    const int result = write_bytes(img, bytes);
    free_TIFF(&img);
    return save_file(path, bytes) ? result : 2;
}

int dump_yuv2rgb(int width, int height, const char* in, char* out) {
    std::vector<unsigned char> frame(static_cast<size_t>(width) * height +
                                     static_cast<size_t>(width) * (height / 2));
    if (!load(in, frame)) return 2;
    return TIFF_Save_YUV2RGB(frame.data(), width, height, out) == 0 ? 0 : 1;
}

int read_image(const char* in, const char* out) {
    FILE* f = std::fopen(in, "rb");
    if (f == nullptr) return 2;
    TIFF_IMG img;
    int result = read_TIFF(f, &img);
    std::fclose(f);
    if (result != 0) return 1;

    std::printf("%c %d %d\n", img.TIFF_type, img.width, img.height);
    std::vector<unsigned char> data;
    const int planes = img.TIFF_type == 'c' ? 3 : 1;
    for (int k = 0; k < planes; ++k) {
        unsigned char** plane = img.TIFF_type == 'c' ? img.color[k] : img.mono;
        for (int r = 0; r < img.height; ++r) data.insert(data.end(), plane[r], plane[r] + img.width);
    }
    if (img.TIFF_type == 'p') data.insert(data.end(), img.cmap[0], img.cmap[0] + 768);
    free_TIFF(&img);
    return save_file(out, data) ? 0 : 2;
}

int read_back(const std::string& what, int width, int height, char* in, const char* out) {
    size_t luma = static_cast<size_t>(width) * height;
    size_t chroma = what == "readyuv" ? static_cast<size_t>(width) * (height / 2) : 0;
    std::vector<unsigned char> data(luma + chroma, 0);
    int result = what == "ready" ? TIFF_readY(data.data(), width, height, in)
                                 : TIFF_readYUV(data.data(), data.data() + luma, width, height, in);
    if (!save_file(out, data)) return 2;
    return result == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return usage();
    const std::string cmd = argv[1];
    if (cmd == "write" && argc == 6 && std::strlen(argv[2]) == 1)
        return write_image(argv[2][0], std::atoi(argv[3]), std::atoi(argv[4]), argv[5]);
    if (cmd == "dump" && argc == 7 && std::string(argv[2]) == "yuv2rgb")
        return dump_yuv2rgb(std::atoi(argv[3]), std::atoi(argv[4]), argv[5], argv[6]);
    if (cmd == "read" && argc == 4) return read_image(argv[2], argv[3]);
    if ((cmd == "ready" || cmd == "readyuv") && argc == 6)
        return read_back(cmd, std::atoi(argv[2]), std::atoi(argv[3]), argv[4], argv[5]);
    return usage();
}
