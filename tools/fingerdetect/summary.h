// The run's summary: how many frames, how many reports and when the first
// came, and how long the detector took per frame. It holds the same few
// numbers however long the run.
#ifndef MOLO_TOOL_SUMMARY_H
#define MOLO_TOOL_SUMMARY_H

#include <cstdio>

#include "time_histogram.h"

namespace fingerdetect {

class RunSummary {
public:
    // One analysed frame: its result and the detector's time for it in ms.
    void add(long frame, int result, double milliseconds);
    long frames() const { return times_.count(); }
    long reports() const { return reports_; }
    long first_report() const { return first_report_; }  // -1 when none
    // Three lines: frames and size, reports, time per frame.
    void print(std::FILE* out, int width, int height) const;

private:
    TimeHistogram times_;
    long reports_ = 0;
    long first_report_ = -1;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_SUMMARY_H
