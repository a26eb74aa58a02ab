// The built-in demo clip, made in memory: a textured scene, panning slowly,
// into which a smooth, finger-coloured region enters from the left edge,
// covers part of the frame for a while, and leaves again.
#ifndef MOLO_TOOL_DEMO_SCENE_H
#define MOLO_TOOL_DEMO_SCENE_H

#include <string>

#include "frame_source.h"

namespace fingerdetect {

class DemoScene : public FrameSource {
public:
    static constexpr int kWidth = 640;
    static constexpr int kHeight = 480;
    static constexpr long kFrames = 40;

    // Radius in frame pixels of the finger region on a frame; 0 when absent.
    static int finger_radius(long frame);
    static bool finger_present(long frame) { return finger_radius(frame) > 0; }
    // One line saying what happens on which frames.
    static std::string description();
    // Paints frame index of the clip into frame.
    static void render(long index, Frame& frame);

    int width() const override { return kWidth; }
    int height() const override { return kHeight; }
    long expected_frames() const override { return kFrames; }
    void frame_rate(int& num, int& den) const override;
    ReadStatus next(Frame& frame, std::string& error) override;

private:
    long next_ = 0;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_DEMO_SCENE_H
