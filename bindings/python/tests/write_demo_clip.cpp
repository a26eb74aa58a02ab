// Writes molo-fingerdetect's built-in demo clip as a YUV4MPEG2 file, and its
// truth (frame,finger: 1 on every frame the finger region is present) as CSV,
// so that the evaluation can be run end to end on a clip whose answers are
// known. Usage: write_demo_clip OUT.y4m OUT_TRUTH.csv
#include <cstdio>
#include <vector>

#include "demo_scene.h"
#include "frame.h"
#include "y4m_writer.h"

int main(int argc, char** argv) {
    using fingerdetect::DemoScene;
    if (argc != 3) {
        std::fprintf(stderr, "usage: write_demo_clip OUT.y4m OUT_TRUTH.csv\n");
        return 2;
    }
    DemoScene scene;
    int rate_num = 0, rate_den = 1;
    scene.frame_rate(rate_num, rate_den);
    std::string error;
    fingerdetect::Y4mWriter writer;
    if (!writer.open(argv[1], DemoScene::kWidth, DemoScene::kHeight, rate_num, rate_den, error)) {
        std::fprintf(stderr, "write_demo_clip: %s\n", error.c_str());
        return 1;
    }
    std::FILE* truth = std::fopen(argv[2], "w");
    if (truth == nullptr) {
        std::fprintf(stderr, "write_demo_clip: cannot create %s\n", argv[2]);
        return 1;
    }
    std::fprintf(truth, "frame,finger\n");
    fingerdetect::Frame frame;
    std::vector<uint8_t> picture(
        fingerdetect::picture_bytes_420(DemoScene::kWidth, DemoScene::kHeight));
    for (long index = 0; index < DemoScene::kFrames; ++index) {
        DemoScene::render(index, frame);
        fingerdetect::planar_420_from_frame(frame, picture.data());
        if (!writer.write(picture.data(), error)) {
            std::fprintf(stderr, "write_demo_clip: %s\n", error.c_str());
            return 1;
        }
        std::fprintf(truth, "%ld,%d\n", index, DemoScene::finger_present(index) ? 1 : 0);
    }
    const bool truth_ok = std::fclose(truth) == 0;
    if (!writer.close(error) || !truth_ok) {
        std::fprintf(stderr, "write_demo_clip: %s\n", truth_ok ? error.c_str() : argv[2]);
        return 1;
    }
    return 0;
}
