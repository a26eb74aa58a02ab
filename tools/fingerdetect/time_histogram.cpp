#include "time_histogram.h"

#include <algorithm>
#include <cmath>

namespace fingerdetect {
namespace {

constexpr double kFirstEdge = 0.0001;  // ms
const double kLogRatio = std::log(1.01);

}  // namespace

void TimeHistogram::add(double ms) {
    if (!(ms >= 0)) ms = 0;  // a clock that stepped back
    int bin = 0;
    if (ms >= kFirstEdge) {
        const double steps = std::floor(std::log(ms / kFirstEdge) / kLogRatio);
        bin = steps >= kBins ? kBins + 1 : 1 + static_cast<int>(steps);
    }
    ++counts_[bin];
    min_ = count_ == 0 ? ms : std::min(min_, ms);
    max_ = count_ == 0 ? ms : std::max(max_, ms);
    sum_ += ms;
    ++count_;
}

double TimeHistogram::value_of_rank(uint64_t k) const {
    uint64_t seen = 0;
    int bin = 0;
    while (seen + counts_[bin] < k) seen += counts_[bin++];
    double value = 0;  // below the first edge; lifted to the smallest time
    if (bin > kBins) {
        value = max_;
    } else if (bin > 0) {
        value = kFirstEdge * std::exp((bin - 1 + 0.5) * kLogRatio);
    }
    return std::clamp(value, min_, max_);
}

TimeStats TimeHistogram::stats() const {
    TimeStats stats;
    if (count_ == 0) return stats;
    const uint64_t n = static_cast<uint64_t>(count_);
    stats.mean = sum_ / static_cast<double>(n);
    stats.median = n % 2 == 1 ? value_of_rank(n / 2 + 1)
                              : (value_of_rank(n / 2) + value_of_rank(n / 2 + 1)) / 2;
    // Smallest rank k with k >= 0.99 n, counted in hundredths to stay exact.
    stats.p99 = value_of_rank(std::max<uint64_t>((99 * n + 99) / 100, 1));
    return stats;
}

}  // namespace fingerdetect
