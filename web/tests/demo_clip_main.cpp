// Writes the tool's built-in demo clip to a Y4M file: molo_web_demo_clip OUT.y4m
#include <cstdio>
#include <string>
#include <vector>

#include "demo_scene.h"
#include "frame.h"
#include "y4m_writer.h"

int main(int argc, char** argv) {
    using namespace fingerdetect;
    if (argc != 2) {
        std::fprintf(stderr, "usage: molo_web_demo_clip OUT.y4m\n");
        return 2;
    }
    DemoScene scene;
    int num = 0, den = 0;
    scene.frame_rate(num, den);
    Y4mWriter out;
    std::string error;
    if (!out.open(argv[1], scene.width(), scene.height(), num, den, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    Frame frame;
    std::vector<uint8_t> picture(picture_bytes_420(scene.width(), scene.height()));
    while (scene.next(frame, error) == ReadStatus::kFrame) {
        planar_420_from_frame(frame, picture.data());
        if (!out.write(picture.data(), error)) break;
    }
    if (!out.close(error) || !error.empty()) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    return 0;
}
