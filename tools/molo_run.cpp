// Runs the detector over a clip of NV21 frames and prints one line per frame:
// what a camera client gets back from MoloFinDetect_Execute.
//
//   molo_run WIDTH HEIGHT CLIP.nv21 [orientation] [gain] [kelvin]
//   molo_run --demo
//
// A clip file is frames of WIDTH * HEIGHT * 3 / 2 bytes back to back (luma,
// then V/U chroma). --demo makes a 640 x 480 clip of its own in which a
// finger-toned region enters from the left edge for a few frames.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "MoloFingerDetect.h"

namespace {

int run_clip(int width, int height, const std::vector<std::vector<unsigned char>>& frames,
             int orientation, float gain, int kelvin) {
    void* fd = MoloFinDetect_Initialize(nullptr, width, height, nullptr);
    if (fd == nullptr) {
        std::fprintf(stderr, "molo_run: a %dx%d preview is not usable\n", width, height);
        return 1;
    }
    const size_t luma = static_cast<size_t>(width) * height;
    int frame_no = 0;
    for (const auto& frame : frames) {
        std::vector<unsigned char> f = frame;  // the planes are the caller's
        int row = 0;
        int col = 0;
        const int result = MoloFinDetect_Execute(fd, f.data(), f.data() + luma, orientation,
                                                 width, 1, gain, kelvin, &row, &col);
        if (result == 1) {
            std::printf("frame %d: finger at row %d, col %d\n", frame_no, row, col);
        } else {
            std::printf("frame %d: %d\n", frame_no, result);
        }
        ++frame_no;
    }
    MoloFinDetect_Finalize(fd, nullptr, 0);
    return 0;
}

// 640 x 480 frames: neutral grey-green scene; frames 2 to 5 carry a
// finger-toned half disc on the left edge.
std::vector<std::vector<unsigned char>> demo_clip() {
    const int width = 640, height = 480;
    std::vector<std::vector<unsigned char>> frames;
    for (int i = 0; i < 8; ++i) {
        std::vector<unsigned char> f(static_cast<size_t>(width) * height * 3 / 2);
        std::memset(f.data(), 120, static_cast<size_t>(width) * height);
        unsigned char* vu = f.data() + static_cast<size_t>(width) * height;
        const bool finger = i >= 2 && i <= 5;
        for (int r = 0; r < height / 2; ++r) {
            for (int c = 0; c < width / 2; ++c) {
                // Working chroma cell (r / 8, c / 8) covers 16 x 16 pixels.
                const int dr = 2 * (r / 8) + 1 - 30;
                const int dc = 2 * (c / 8) + 1;
                const bool inside = finger && dr * dr + dc * dc <= 15 * 15;
                vu[r * width + 2 * c] = inside ? 147 : 100;
                vu[r * width + 2 * c + 1] = inside ? 117 : 160;
            }
        }
        frames.push_back(std::move(f));
    }
    return frames;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--demo") == 0) {
        return run_clip(640, 480, demo_clip(), 0, 2.0f, 5000);
    }
    if (argc < 4) {
        std::fprintf(stderr,
                     "usage: molo_run WIDTH HEIGHT CLIP.nv21 [orientation] [gain] [kelvin]\n"
                     "       molo_run --demo\n");
        return 2;
    }
    const int width = std::atoi(argv[1]);
    const int height = std::atoi(argv[2]);
    const int orientation = argc > 4 ? std::atoi(argv[4]) : 0;
    const float gain = argc > 5 ? static_cast<float>(std::atof(argv[5])) : 2.0f;
    const int kelvin = argc > 6 ? std::atoi(argv[6]) : 5000;
    if (width <= 0 || height <= 0) {
        std::fprintf(stderr, "molo_run: width and height must be positive\n");
        return 2;
    }
    std::FILE* in = std::fopen(argv[3], "rb");
    if (in == nullptr) {
        std::perror(argv[3]);
        return 1;
    }
    const size_t frame_size = static_cast<size_t>(width) * height * 3 / 2;
    std::vector<std::vector<unsigned char>> frames;
    for (;;) {
        std::vector<unsigned char> f(frame_size);
        if (std::fread(f.data(), 1, frame_size, in) != frame_size) break;
        frames.push_back(std::move(f));
    }
    std::fclose(in);
    return run_clip(width, height, frames, orientation, gain, kelvin);
}
