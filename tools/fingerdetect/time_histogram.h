// Statistics of per-frame times in constant memory, so that a run over a
// camera feed can last for days. The times are counted in bins whose edges
// grow by a fixed ratio of 1.01 from 0.0001 ms to 100 s. The mean is exact
// (a running sum); the median and the 99th percentile are read from the bins
// and are within 0.5 % of the true value (half a bin on a log scale, the
// square root of 1.01 less one), or within 0.0001 ms below the first bin;
// times above 100 s count as the largest time seen.
#ifndef MOLO_TOOL_TIME_HISTOGRAM_H
#define MOLO_TOOL_TIME_HISTOGRAM_H

#include <array>
#include <cstdint>

namespace fingerdetect {

struct TimeStats {
    double mean = 0;
    double median = 0;  // the mean of the two middle values for an even count
    double p99 = 0;     // 99th percentile, nearest rank: the ceil(0.99 n)-th smallest
};

class TimeHistogram {
public:
    void add(double milliseconds);
    long count() const { return count_; }
    // All 0 when no time was added.
    TimeStats stats() const;

private:
    // The k-th smallest time (k from 1), as the middle of its bin on a log
    // scale, kept within the smallest and largest time seen.
    double value_of_rank(uint64_t k) const;

    static constexpr int kBins = 2084;  // 1.01^2084 > 10^9: 0.0001 ms to 100 s
    // Bin 0 holds the times below the first edge, bin kBins + 1 those above
    // the last.
    std::array<uint64_t, kBins + 2> counts_{};
    long count_ = 0;
    double sum_ = 0;
    double min_ = 0;
    double max_ = 0;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_TIME_HISTOGRAM_H
