// The per-frame lines on standard output: what a camera client gets back
// from the detector for each frame, as CSV or as JSON lines.
#ifndef MOLO_TOOL_RESULT_WRITER_H
#define MOLO_TOOL_RESULT_WRITER_H

#include <cstdio>

namespace fingerdetect {

struct FrameResult {
    long frame = 0;
    int result = 0;  // MoloFinDetect_Execute's return value
    int row = 0;     // the reported centroid in frame pixels, valid when result is 1
    int col = 0;
};

class ResultWriter {
public:
    // json: one JSON object per line; else CSV with a header line.
    ResultWriter(std::FILE* out, bool json) : out_(out), json_(json) {}
    // Writes the CSV header (nothing for JSON lines).
    void begin();
    void write(const FrameResult& r);

private:
    std::FILE* out_;
    bool json_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_RESULT_WRITER_H
