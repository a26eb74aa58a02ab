// A clip given as a list of colour TIFF pictures, one per frame, read back
// into NV21 by the library's own reader (TIFF_readYUV).
#ifndef MOLO_TOOL_TIFF_LIST_READER_H
#define MOLO_TOOL_TIFF_LIST_READER_H

#include <string>
#include <vector>

#include "frame_source.h"

namespace fingerdetect {

// True for a path ending in .tif or .tiff (any letter case).
bool is_tiff_path(const std::string& path);

class TiffListReader : public FrameSource {
public:
    explicit TiffListReader(std::vector<std::string> paths);

    // Takes the clip size from the first picture, which must be a colour
    // image of even width and height.
    bool start(std::string& error);

    int width() const override { return width_; }
    int height() const override { return height_; }
    long expected_frames() const override { return static_cast<long>(paths_.size()); }
    ReadStatus next(Frame& frame, std::string& error) override;

private:
    std::vector<std::string> paths_;
    size_t next_index_ = 0;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_TIFF_LIST_READER_H
