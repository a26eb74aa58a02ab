// YUV4MPEG2 streams (what `ffmpeg -f yuv4mpegpipe` writes) with 4:2:0
// chroma; each picture is handed on as an NV21 frame.
#ifndef MOLO_TOOL_Y4M_READER_H
#define MOLO_TOOL_Y4M_READER_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "frame_source.h"

namespace fingerdetect {

struct Y4mHeader {
    int width = 0;
    int height = 0;
    int rate_num = 0;  // 0:0 when the stream does not say
    int rate_den = 0;
    int aspect_num = 0;
    int aspect_den = 0;
    std::string chroma;  // the C tag without its letter, empty when absent
};

// Parses the stream header line, without its newline. Accepts progressive
// 4:2:0 only; X (comment) and unknown parameters are skipped. On failure
// returns false with a one-line reason.
bool parse_y4m_header(const std::string& line, Y4mHeader& header, std::string& error);

class Y4mReader : public FrameSource {
public:
    // Reads from in, which the reader closes when owns_file is set; name is
    // used in messages ("standard input" or the path).
    Y4mReader(std::FILE* in, std::string name, bool owns_file);
    ~Y4mReader() override;
    Y4mReader(const Y4mReader&) = delete;
    Y4mReader& operator=(const Y4mReader&) = delete;

    // Reads and checks the stream header. Must succeed before next().
    bool start(std::string& error);
    const Y4mHeader& header() const { return header_; }

    int width() const override { return header_.width; }
    int height() const override { return header_.height; }
    long expected_frames() const override { return expected_frames_; }
    void frame_rate(int& num, int& den) const override;
    ReadStatus next(Frame& frame, std::string& error) override;

private:
    std::FILE* in_;
    std::string name_;
    bool owns_file_;
    Y4mHeader header_;
    long expected_frames_ = -1;
    long frame_number_ = 0;
    size_t picture_bytes_ = 0;      // of one planar picture
    std::vector<uint8_t> picture_;  // grows while the first picture arrives
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_Y4M_READER_H
