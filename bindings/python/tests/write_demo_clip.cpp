// Writes molo-fingerdetect's built-in demo clip, so that the binding and web
// tests feed the very frames the tool analyses: as YUV4MPEG2, or as packed
// NV21 frames back to back (luma, then V,U pairs) when OUT ends in .nv21.
// The Java and web builds compile this file too.
//   molo_write_demo_clip OUT.y4m|OUT.nv21
#include <cstdio>
#include <string>
#include <vector>

#include "demo_scene.h"
#include "y4m_writer.h"

using namespace fingerdetect;

int main(int argc, char** argv) {
    DemoScene scene;
    Frame frame;
    std::string error, out = argc == 2 ? argv[1] : "";
    if (out.size() > 5 && out.compare(out.size() - 5, 5, ".nv21") == 0) {
        std::FILE* file = std::fopen(out.c_str(), "wb");
        bool ok = file != nullptr;
        // The demo's width is even, so its row pitch is the width itself.
        while (ok && scene.next(frame, error) == ReadStatus::kFrame) {
            ok = std::fwrite(frame.y.data(), 1, frame.y.size(), file) == frame.y.size() &&
                 std::fwrite(frame.vu.data(), 1, frame.vu.size(), file) == frame.vu.size();
        }
        return file != nullptr && std::fclose(file) == 0 && ok && error.empty() ? 0 : 1;
    }
    Y4mWriter writer;
    std::vector<uint8_t> picture(picture_bytes_420(scene.width(), scene.height()));
    if (out.empty() || !writer.open(out, scene.width(), scene.height(), 10, 1, error)) return 1;
    while (scene.next(frame, error) == ReadStatus::kFrame) {
        planar_420_from_frame(frame, picture.data());
        if (!writer.write(picture.data(), error)) return 1;
    }
    return writer.close(error) && error.empty() ? 0 : 1;
}
