#include "summary.h"

namespace fingerdetect {

void RunSummary::add(long frame, int result, double milliseconds) {
    times_.add(milliseconds);
    if (result == 1) {
        if (reports_ == 0) first_report_ = frame;
        ++reports_;
    }
}

void RunSummary::print(std::FILE* out, int width, int height) const {
    std::fprintf(out, "frames: %ld (%dx%d)\n", frames(), width, height);
    if (reports_ > 0) {
        std::fprintf(out, "reports: %ld, first at frame %ld\n", reports_, first_report_);
    } else {
        std::fprintf(out, "reports: 0\n");
    }
    const TimeStats t = times_.stats();
    std::fprintf(out, "time per frame: mean %.3f ms, median %.3f ms, 99th percentile %.3f ms\n",
                 t.mean, t.median, t.p99);
}

}  // namespace fingerdetect
