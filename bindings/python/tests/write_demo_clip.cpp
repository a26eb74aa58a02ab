// Writes molo-fingerdetect's built-in demo clip as a YUV4MPEG2 file, so the
// Python tests can feed the very frames the tool analyses.
//   molo_write_demo_clip OUT.y4m
#include <string>
#include <vector>

#include "demo_scene.h"
#include "y4m_writer.h"

using namespace fingerdetect;

int main(int argc, char** argv) {
    DemoScene scene;
    Y4mWriter writer;
    Frame frame;
    std::string error;
    std::vector<uint8_t> picture(picture_bytes_420(scene.width(), scene.height()));
    if (argc != 2 || !writer.open(argv[1], scene.width(), scene.height(), 10, 1, error)) return 1;
    while (scene.next(frame, error) == ReadStatus::kFrame) {
        planar_420_from_frame(frame, picture.data());
        if (!writer.write(picture.data(), error)) return 1;
    }
    return writer.close(error) ? 0 : 1;
}
