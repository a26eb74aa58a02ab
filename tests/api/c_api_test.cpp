#include <gtest/gtest.h>

#include <vector>

#include "MoloFingerDetect.h"
#include "detector/colour_rules.h"
#include "common/log_capture.h"
#include "common/synthetic_frame.h"

namespace {

// A live handle for a 640 x 480 preview, finalised when the test ends.
struct Handle {
    Handle() : h(MoloFinDetect_Initialize(nullptr, 640, 480, nullptr)) {}
    ~Handle() { MoloFinDetect_Finalize(h, nullptr, 0); }
    Molo_FingerDetect* operator->() const { return static_cast<Molo_FingerDetect*>(h); }
    void* h;
};

int execute(Handle& handle, Nv21Frame& f, int orientation = 0, float gain = 2.0f) {
    int row = -1, col = -1;
    return MoloFinDetect_Execute(handle.h, f.y_plane(), f.vu_plane(), orientation, f.stride, 1,
                                 gain, 5000, &row, &col);
}

}  // namespace

TEST(LightClass, KelvinAndGainLimitsAndKindRules) {
    struct Case {
        float gain;
        int kelvin, expected;
    };
    for (const Case& c : {Case{5.0f, 3899, 3}, Case{5.0f, 3900, 1}, Case{4.5f, 3000, 1},
                          Case{4.5f, 2999, 3}, Case{4.5001f, 3000, 3}, Case{1.0f, 5000, 2},
                          Case{1.0f, 2999, 3}, Case{1.02f, 5000, 1}, Case{1.0199f, 5000, 2}}) {
        EXPECT_EQ(molo::light_class_of(c.gain, c.kelvin), c.expected) << c.gain << " " << c.kelvin;
    }
    // The kinds (1 to 4) each light class (1 to 3) tries.
    const char* allowed[] = {"1100", "1101", "1110"};
    for (int light = 1; light <= 3; ++light) {
        for (int kind = 1; kind <= 4; ++kind) {
            EXPECT_EQ(molo::light_allows(light, kind), allowed[light - 1][kind - 1] == '1')
                << "light " << light << ", kind " << kind;
        }
    }
    // Band seeds, area share, compactness limit and grey test of each kind;
    // the grey band kind keeps the looser compactness limit.
    const std::vector<std::vector<float>> rules{
        {0, 0.12f, 1.42f, 0}, {0, 0.12f, 1.42f, 1}, {1, 0.05f, 1.1f, 0}, {1, 0.05f, 1.42f, 1}};
    for (int kind = 1; kind <= 4; ++kind) {
        const molo::KindRules k = molo::kind_rules(kind);
        EXPECT_EQ((std::vector<float>{float(k.band_seeds), k.max_area_share, k.compactness_limit,
                                      float(k.grey_test)}),
                  rules[kind - 1])
            << "kind " << kind;
    }
}

TEST(CApi, ArgumentChecksAndResults) {
    unsigned char byte = 0;
    int row = 0, col = 0;
    // A null plane is reported before the null handle.
    EXPECT_EQ(MoloFinDetect_Execute(nullptr, &byte, nullptr, 0, 640, 1, 1, 5000, &row, &col), -12);
    EXPECT_EQ(MoloFinDetect_Execute(nullptr, nullptr, &byte, 0, 640, 1, 1, 5000, &row, &col), -12);
    EXPECT_EQ(MoloFinDetect_Execute(nullptr, &byte, &byte, 0, 640, 1, 1, 5000, &row, &col), 0);
    EXPECT_EQ(MoloFinDetect_Verification(nullptr, nullptr, &byte, 0, 0, 0, 0), -12);
    EXPECT_EQ(MoloFinDetect_Verification(nullptr, &byte, &byte, 0, 0, 0, 0), 0);
    EXPECT_EQ(MoloFinDetect_Finalize(nullptr, nullptr, 1), 0);

    Handle h;
    EXPECT_EQ(MoloFinDetect_Verification(h.h, &byte, &byte, 1, 2, 3, 4), 0);
    Nv21Frame f(640, 480, 0, 0, 0);
    EXPECT_EQ(
        MoloFinDetect_Execute(h.h, f.y_plane(), f.vu_plane(), 0, 639, 1, 1.0f, 5000, &row, &col),
        MOLO_FD_BAD_STRIDE);
    EXPECT_EQ(h->frame_count, 0);
    // A live handle is returned unchanged, not re-initialised.
    h->frame_count = 7;
    EXPECT_EQ(MoloFinDetect_Initialize(h.h, 1920, 1080, nullptr), h.h);
    EXPECT_EQ(h->frame_count, 7);
    EXPECT_EQ(h->down_width, 80);
}

TEST(CApi, AbsurdSizeGivesNullAndTheFailureMessage) {
    LogCapture log;
    EXPECT_EQ(MoloFinDetect_Initialize(nullptr, 640, 100000, nullptr), nullptr);
    const auto messages = log.messages();
    ASSERT_EQ(messages.size(), 2u);  // the banner, then the failure
    EXPECT_EQ(messages[1], (LoggedMessage{3, "MoloFinDetect_Initializ (-1)\n"}));
}

TEST(CApi, WrongOrientationLocksTheDetectorOut) {
    Handle h;
    LogCapture log;
    Nv21Frame grey(640, 480, 128, 128, 128);
    EXPECT_EQ(execute(h, grey, 2), 0);
    EXPECT_EQ(h->busy, 1);
    EXPECT_EQ(h->frame_count, 1);  // the first call locked it; the other four bounced
    EXPECT_EQ(execute(h, grey, 0), 0);
    EXPECT_EQ(h->frame_count, 1);
    EXPECT_EQ(log.messages(), (std::vector<LoggedMessage>{{6, "error! orientation is wrong.\n"}}));
}

TEST(CApi, FrameCounterWrapsWithoutLeavingTheColourTable) {
    Handle h;
    Nv21Frame grey(640, 480, 128, 128, 128);
    h->db_count = 5;
    h->frame_count = 2147483647;
    h->execute(grey.y_plane(), grey.vu_plane(), 0, true, 640, 1, 2.0f, 5000, nullptr, nullptr);
    EXPECT_EQ(h->db_index, 2);  // 2147483647 % 5
    h->execute(grey.y_plane(), grey.vu_plane(), 0, false, 640, 1, 2.0f, 5000, nullptr, nullptr);
    EXPECT_EQ(h->db_index, 3);  // 2147483648 % 5, counted without overflow
}
