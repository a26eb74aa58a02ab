// Writes molo-fingerdetect's built-in demo clip as a YUV4MPEG2 file, so the
// Python tests can feed the very frames the tool analyses.
//   molo_write_demo_clip OUT.y4m
#include <cstdio>
#include <string>
#include <vector>

#include "demo_scene.h"
#include "y4m_writer.h"

using namespace fingerdetect;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: molo_write_demo_clip OUT.y4m\n");
        return 2;
    }
    DemoScene scene;
    int num = 0;
    int den = 0;
    scene.frame_rate(num, den);
    Y4mWriter writer;
    std::string error;
    Frame frame;
    std::vector<uint8_t> picture(picture_bytes_420(scene.width(), scene.height()));
    bool ok = writer.open(argv[1], scene.width(), scene.height(), num, den, error);
    while (ok) {
        const ReadStatus status = scene.next(frame, error);
        if (status != ReadStatus::kFrame) {
            ok = status == ReadStatus::kEnd;
            break;
        }
        planar_420_from_frame(frame, picture.data());
        ok = writer.write(picture.data(), error);
    }
    if (ok) ok = writer.close(error);
    if (!ok) std::fprintf(stderr, "molo_write_demo_clip: %s\n", error.c_str());
    return ok ? 0 : 1;
}
