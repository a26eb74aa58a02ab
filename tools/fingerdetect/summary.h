// The run's summary: how many frames, how many reports and when the first
// came, and how long the detector took per frame.
#ifndef MOLO_TOOL_SUMMARY_H
#define MOLO_TOOL_SUMMARY_H

#include <cstdio>
#include <vector>

namespace fingerdetect {

struct TimeStats {
    double mean = 0;
    double median = 0;  // the mean of the two middle values for an even count
    double p99 = 0;     // 99th percentile, nearest rank: the ceil(0.99 n)-th smallest
};

// Statistics of a list of times; all 0 for an empty list.
TimeStats time_stats(std::vector<double> times);

class RunSummary {
public:
    // One analysed frame: its result and the detector's time for it in ms.
    void add(long frame, int result, double milliseconds);
    long frames() const { return static_cast<long>(times_.size()); }
    long reports() const { return reports_; }
    long first_report() const { return first_report_; }  // -1 when none
    // Three lines: frames and size, reports, time per frame.
    void print(std::FILE* out, int width, int height) const;

private:
    std::vector<double> times_;
    long reports_ = 0;
    long first_report_ = -1;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_SUMMARY_H
