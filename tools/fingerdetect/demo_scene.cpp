#include "demo_scene.h"

#include <algorithm>
#include <cmath>

namespace fingerdetect {
namespace {

// Timeline: empty, entering, covering, leaving, empty again.
constexpr long kEnterFrom = 8;
constexpr long kCoverFrom = 14;
constexpr long kLeaveFrom = 26;
constexpr long kGoneFrom = 32;
constexpr int kCoverRadius = 144;  // 18 working cells
constexpr int kPanPerFrame = 3;    // pixels the scene moves per frame

uint8_t to_byte(double v) { return static_cast<uint8_t>(std::clamp(v, 0.0, 255.0)); }

// The scene at scene coordinates (x, y): tiles of two blue-green tones with a
// woven luma texture, far from every finger tone in colour.
void scene_luma_chroma(int x, int y, double& luma, double& v, double& u) {
    const bool dark_tile = ((x / 64) + (y / 64)) % 2 == 0;
    luma = (dark_tile ? 85.0 : 125.0) + 30.0 * std::sin(x * 0.35) * std::sin(y * 0.27) +
           12.0 * std::sin((x + 2 * y) * 0.05);
    v = dark_tile ? 108.0 : 116.0;
    u = dark_tile ? 152.0 : 142.0;
}

}  // namespace

int DemoScene::finger_radius(long frame) {
    if (frame < kEnterFrom || frame >= kGoneFrom) return 0;
    if (frame < kCoverFrom) {  // growing in steps up to the covering size
        return static_cast<int>(kCoverRadius * (frame - kEnterFrom + 1) /
                                (kCoverFrom - kEnterFrom + 1));
    }
    if (frame < kLeaveFrom) return kCoverRadius;
    return static_cast<int>(kCoverRadius * (kGoneFrom - frame) / (kGoneFrom - kLeaveFrom + 1));
}

std::string DemoScene::description() {
    return "demo: " + std::to_string(kFrames) + " frames of " + std::to_string(kWidth) + "x" +
           std::to_string(kHeight) + "; a finger enters from the left on frames " +
           std::to_string(kEnterFrom) + "-" + std::to_string(kCoverFrom - 1) + ", covers frames " +
           std::to_string(kCoverFrom) + "-" + std::to_string(kLeaveFrom - 1) +
           ", leaves on frames " + std::to_string(kLeaveFrom) + "-" +
           std::to_string(kGoneFrom - 1) + " and is gone from frame " + std::to_string(kGoneFrom);
}

void DemoScene::render(long index, Frame& frame) {
    if (frame.width != kWidth || frame.height != kHeight || !frame.v_first) {
        frame.allocate(kWidth, kHeight);
    }
    const int pan = static_cast<int>(index) * kPanPerFrame;
    const int radius = finger_radius(index);
    // The finger: a disc centred on the left edge, a little below the
    // middle row, moving slightly while it covers; lit from the top.
    const double cy = kHeight / 2 + 8 + 6.0 * std::sin(index * 0.6);
    auto finger_at = [&](double x, double y, double& luma, double& v, double& u) {
        const double dy = y - cy;
        const double d2 = x * x + dy * dy;
        if (radius == 0 || d2 > static_cast<double>(radius) * radius) return false;
        const double shade = std::sqrt(d2) / radius;  // 0 at the centre, 1 at the rim
        luma = 150.0 - 25.0 * shade * shade - 0.04 * dy;
        v = 148.0 - 3.0 * shade;
        u = 117.0 + 2.0 * shade;
        return true;
    };
    for (int r = 0; r < kHeight; ++r) {
        uint8_t* row = &frame.y[static_cast<size_t>(r) * frame.stride];
        for (int c = 0; c < kWidth; ++c) {
            double luma, v, u;
            if (!finger_at(c + 0.5, r + 0.5, luma, v, u)) scene_luma_chroma(c + pan, r, luma, v, u);
            row[c] = to_byte(luma);
        }
    }
    // Chroma per 2 x 2 block, sampled at the block's centre.
    for (int r = 0; r < frame.chroma_rows(); ++r) {
        uint8_t* row = &frame.vu[static_cast<size_t>(r) * frame.stride];
        for (int c = 0; c < frame.chroma_width(); ++c) {
            double luma, v, u;
            if (!finger_at(2 * c + 1.0, 2 * r + 1.0, luma, v, u)) {
                scene_luma_chroma(2 * c + pan, 2 * r, luma, v, u);
            }
            row[2 * c] = to_byte(v);
            row[2 * c + 1] = to_byte(u);
        }
    }
}

void DemoScene::frame_rate(int& num, int& den) const {
    num = 10;
    den = 1;
}

ReadStatus DemoScene::next(Frame& frame, std::string&) {
    if (next_ >= kFrames) return ReadStatus::kEnd;
    render(next_++, frame);
    return ReadStatus::kFrame;
}

}  // namespace fingerdetect
