#include "summary.h"

#include <algorithm>

namespace fingerdetect {

TimeStats time_stats(std::vector<double> times) {
    TimeStats stats;
    const size_t n = times.size();
    if (n == 0) return stats;
    std::sort(times.begin(), times.end());
    double sum = 0;
    for (double t : times) sum += t;
    stats.mean = sum / static_cast<double>(n);
    stats.median = n % 2 == 1 ? times[n / 2] : (times[n / 2 - 1] + times[n / 2]) / 2;
    // Smallest rank k with k >= 0.99 n, counted in hundredths to stay exact.
    const size_t rank = (99 * n + 99) / 100;
    stats.p99 = times[std::max<size_t>(rank, 1) - 1];
    return stats;
}

void RunSummary::add(long frame, int result, double milliseconds) {
    times_.push_back(milliseconds);
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
    const TimeStats t = time_stats(times_);
    std::fprintf(out, "time per frame: mean %.3f ms, median %.3f ms, 99th percentile %.3f ms\n",
                 t.mean, t.median, t.p99);
}

}  // namespace fingerdetect
