// Writes the frames of molo-fingerdetect's demo clip as packed NV21 (luma,
// then V,U pairs, no padding), one after another, so that the Java tests feed
// the binding exactly what the tool's demo feeds the detector.
//   molo_java_demo_frames OUT.nv21
#include <cstdio>

#include "demo_scene.h"
#include "frame.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: molo_java_demo_frames OUT.nv21\n");
        return 2;
    }
    std::FILE* out = std::fopen(argv[1], "wb");
    if (out == nullptr) {
        std::perror(argv[1]);
        return 1;
    }
    fingerdetect::Frame frame;
    bool ok = true;
    for (long i = 0; i < fingerdetect::DemoScene::kFrames; ++i) {
        fingerdetect::DemoScene::render(i, frame);
        // The demo's width is even, so its row pitch is the width itself.
        ok = ok && std::fwrite(frame.y.data(), 1, frame.y.size(), out) == frame.y.size() &&
             std::fwrite(frame.vu.data(), 1, frame.vu.size(), out) == frame.vu.size();
    }
    ok = std::fclose(out) == 0 && ok;
    if (!ok) std::fprintf(stderr, "molo_java_demo_frames: cannot write %s\n", argv[1]);
    return ok ? 0 : 1;
}
