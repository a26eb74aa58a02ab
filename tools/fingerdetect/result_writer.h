// The per-frame lines on standard output: what a camera client gets back
// from the detector for each frame, as CSV or as JSON lines.
#ifndef MOLO_TOOL_RESULT_WRITER_H
#define MOLO_TOOL_RESULT_WRITER_H

#include <cstdio>
#include <string>

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
    ResultWriter(std::FILE* out, bool json);
    // Writes the CSV header (nothing for JSON lines).
    bool begin(std::string& error);
    // Writes one line and flushes it, so that what a failed or killed run
    // leaves behind ends with a whole line. false with "cannot write the
    // results: REASON" when the line did not get out.
    bool write(const FrameResult& r, std::string& error);

private:
    // Flushes a line of length bytes (negative: not written).
    bool flushed(int length, std::string& error);
    std::FILE* out_;
    bool json_;
    long long start_ = -1;      // offset of the first line in a regular file, else -1
    long long good_bytes_ = 0;  // bytes of whole lines flushed
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_RESULT_WRITER_H
