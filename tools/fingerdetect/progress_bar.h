// A one-line progress bar on a terminal, redrawn in place and cleared when
// the run ends so that the summary starts on a clean line.
#ifndef MOLO_TOOL_PROGRESS_BAR_H
#define MOLO_TOOL_PROGRESS_BAR_H

#include <chrono>
#include <cstdio>

namespace fingerdetect {

class ProgressBar {
public:
    // Draws nothing unless enabled and total is known (above 0).
    ProgressBar(std::FILE* out, long total, bool enabled);
    // done frames of total; redraws at most ten times a second.
    void update(long done);
    // Erases the bar.
    void finish();

private:
    void draw(long done);
    std::FILE* out_;
    long total_;
    bool active_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point last_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_PROGRESS_BAR_H
