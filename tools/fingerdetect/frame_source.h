// Where the frames of a run come from: a video stream, raw frames, a list of
// pictures or the built-in demo clip.
#ifndef MOLO_TOOL_FRAME_SOURCE_H
#define MOLO_TOOL_FRAME_SOURCE_H

#include <string>

#include "frame.h"

namespace fingerdetect {

enum class ReadStatus {
    kFrame,  // a whole frame was read
    kEnd,    // the input ended cleanly between frames
    kError,  // the input cannot be read on; the message says why
};

class FrameSource {
public:
    virtual ~FrameSource() = default;
    // Picture size; fixed for the whole clip.
    virtual int width() const = 0;
    virtual int height() const = 0;
    // Number of frames when it is known in advance (a file, a list), else -1.
    virtual long expected_frames() const { return -1; }
    // Frames per second as numerator and denominator, for written clips.
    virtual void frame_rate(int& num, int& den) const {
        num = 30;
        den = 1;
    }
    // Reads the next frame into frame (sized by the source). On kError,
    // error holds a one-line message naming the frame.
    virtual ReadStatus next(Frame& frame, std::string& error) = 0;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_FRAME_SOURCE_H
