#include "annotation.h"

#include <algorithm>

#include "MoloFingerDetect.h"

namespace fingerdetect {
namespace {

struct Colour {
    uint8_t y;
    uint8_t u;
    uint8_t v;
};

// Video-range BT.601 values.
constexpr Colour kGrey{180, 128, 128};
constexpr Colour kAmber{177, 35, 170};
constexpr Colour kRed{81, 90, 240};
constexpr Colour kWhite{235, 128, 128};
constexpr Colour kBlack{16, 128, 128};

class Picture {
public:
    Picture(uint8_t* data, int width, int height)
        : w_(width),
          h_(height),
          cw_((width + 1) / 2),
          ch_((height + 1) / 2),
          y_(data),
          u_(data + static_cast<size_t>(width) * height),
          v_(u_ + static_cast<size_t>(cw_) * ch_) {}

    int width() const { return w_; }
    int height() const { return h_; }

    // Fills rows [r0, r1) and columns [c0, c1), clipped to the picture.
    void fill(int r0, int r1, int c0, int c1, Colour colour) {
        r0 = std::max(r0, 0);
        c0 = std::max(c0, 0);
        r1 = std::min(r1, h_);
        c1 = std::min(c1, w_);
        if (r0 >= r1 || c0 >= c1) return;
        for (int r = r0; r < r1; ++r) {
            std::fill(y_ + static_cast<size_t>(r) * w_ + c0, y_ + static_cast<size_t>(r) * w_ + c1,
                      colour.y);
        }
        for (int r = r0 / 2; r <= (r1 - 1) / 2; ++r) {
            for (int c = c0 / 2; c <= (c1 - 1) / 2; ++c) {
                u_[static_cast<size_t>(r) * cw_ + c] = colour.u;
                v_[static_cast<size_t>(r) * cw_ + c] = colour.v;
            }
        }
    }

    // Moves the chroma of rows [r0, r1), columns [c0, c1) halfway towards
    // the colour, keeping the luma, so the scene stays visible beneath.
    void tint(int r0, int r1, int c0, int c1, Colour colour) {
        r0 = std::max(r0, 0);
        c0 = std::max(c0, 0);
        r1 = std::min(r1, h_);
        c1 = std::min(c1, w_);
        for (int r = r0 / 2; r < (r1 + 1) / 2; ++r) {
            for (int c = c0 / 2; c < (c1 + 1) / 2; ++c) {
                uint8_t& u = u_[static_cast<size_t>(r) * cw_ + c];
                uint8_t& v = v_[static_cast<size_t>(r) * cw_ + c];
                u = static_cast<uint8_t>((u + colour.u) / 2);
                v = static_cast<uint8_t>((v + colour.v) / 2);
            }
        }
    }

    // An outline of the given thickness inside rows [r0, r1), columns [c0, c1);
    // dashed draws segments of dash pixels with gaps of the same length.
    void outline(int r0, int r1, int c0, int c1, int thickness, Colour colour, int dash = 0) {
        const int step = dash > 0 ? 2 * dash : std::max(r1 - r0, c1 - c0);
        const int len = dash > 0 ? dash : step;
        for (int c = c0; c < c1; c += step) {
            fill(r0, r0 + thickness, c, std::min(c + len, c1), colour);
            fill(r1 - thickness, r1, c, std::min(c + len, c1), colour);
        }
        for (int r = r0; r < r1; r += step) {
            fill(r, std::min(r + len, r1), c0, c0 + thickness, colour);
            fill(r, std::min(r + len, r1), c1 - thickness, c1, colour);
        }
    }

private:
    int w_;
    int h_;
    int cw_;
    int ch_;
    uint8_t* y_;
    uint8_t* u_;
    uint8_t* v_;
};

// Tints the region's cells and boxes them; draws nothing for an empty mask.
void mark_region(Picture& pic, const Molo_FingerDetect& d, Colour colour, int thickness) {
    if (d.finger_mask == nullptr) return;
    int top = d.down_height, left = d.down_width, bottom = -1, right = -1;
    for (int r = 0; r < d.down_height; ++r) {
        for (int c = 0; c < d.down_width; ++c) {
            if (d.finger_mask[r * d.down_width + c] == 0) continue;
            pic.tint(8 * r, 8 * r + 8, 8 * c, 8 * c + 8, colour);
            top = std::min(top, r);
            bottom = std::max(bottom, r);
            left = std::min(left, c);
            right = std::max(right, c);
        }
    }
    if (bottom < 0) return;
    pic.outline(8 * top, 8 * bottom + 8, 8 * left, 8 * right + 8, thickness, colour);
}

void cross(Picture& pic, int row, int col, int arm, int half, Colour colour) {
    pic.fill(row - half, row + half, col - arm, col + arm, colour);
    pic.fill(row - arm, row + arm, col - half, col + half, colour);
}

}  // namespace

void draw_decision(uint8_t* picture, int width, int height, DecisionState state,
                   const Molo_FingerDetect& detector, int row, int col) {
    Picture pic(picture, width, height);
    const int thickness = std::max(2, std::min(width, height) / 80);
    switch (state) {
        case DecisionState::kSearching:
            pic.outline(0, height, 0, width, std::max(1, thickness / 3), kGrey);
            break;
        case DecisionState::kHeld:
            mark_region(pic, detector, kAmber, std::max(1, thickness / 2));
            pic.outline(0, height, 0, width, thickness, kAmber, 4 * thickness);
            break;
        case DecisionState::kReported: {
            mark_region(pic, detector, kRed, std::max(1, thickness / 2));
            pic.outline(0, height, 0, width, thickness, kRed);
            const int arm = std::max(6, std::min(width, height) / 16);
            cross(pic, row, col, arm + 1, thickness / 2 + 1, kBlack);
            cross(pic, row, col, arm, std::max(1, thickness / 2), kWhite);
            break;
        }
    }
}

}  // namespace fingerdetect
