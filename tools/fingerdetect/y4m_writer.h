// Writes a YUV4MPEG2 stream of planar 4:2:0 pictures, which video players
// and ffmpeg read directly.
#ifndef MOLO_TOOL_Y4M_WRITER_H
#define MOLO_TOOL_Y4M_WRITER_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace fingerdetect {

class Y4mWriter {
public:
    Y4mWriter() = default;
    ~Y4mWriter();
    Y4mWriter(const Y4mWriter&) = delete;
    Y4mWriter& operator=(const Y4mWriter&) = delete;

    // Creates the file and writes the stream header. false with a reason.
    bool open(const std::string& path, int width, int height, int rate_num, int rate_den,
              std::string& error);
    // Appends one picture of picture_bytes_420(width, height) bytes: Y, U, V,
    // and flushes it. false with "cannot write PATH: REASON".
    bool write(const uint8_t* picture, std::string& error);
    // Flushes and closes; false with a reason when the data did not reach the file.
    bool close(std::string& error);

private:
    std::FILE* out_ = nullptr;
    std::string path_;
    size_t picture_bytes_ = 0;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_Y4M_WRITER_H
