// Raw frames back to back without any header: NV21 (what `ffmpeg -pix_fmt
// nv21 -f rawvideo` writes) or NV12, of a size given on the command line.
#ifndef MOLO_TOOL_RAW_READER_H
#define MOLO_TOOL_RAW_READER_H

#include <cstdio>
#include <string>

#include "frame_source.h"

namespace fingerdetect {

// Parses "WxH" (1 to kMaxExtent each). false with a reason otherwise.
bool parse_frame_size(const std::string& text, int& width, int& height, std::string& error);

class RawReader : public FrameSource {
public:
    // v_first: chroma pairs stored V then U (NV21); else U then V (NV12).
    RawReader(std::FILE* in, std::string name, bool owns_file, int width, int height, bool v_first);
    ~RawReader() override;
    RawReader(const RawReader&) = delete;
    RawReader& operator=(const RawReader&) = delete;

    // Bytes of one frame: the luma plane, then (height + 1) / 2 rows of
    // (width + 1) / 2 chroma pairs.
    size_t frame_bytes() const;

    int width() const override { return width_; }
    int height() const override { return height_; }
    long expected_frames() const override;
    ReadStatus next(Frame& frame, std::string& error) override;

private:
    std::FILE* in_;
    std::string name_;
    bool owns_file_;
    int width_;
    int height_;
    bool v_first_;
    long frame_number_ = 0;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_RAW_READER_H
