#include "raw_reader.h"

#include <sys/stat.h>

#include <utility>

namespace fingerdetect {

bool parse_frame_size(const std::string& text, int& width, int& height, std::string& error) {
    const size_t x = text.find('x');
    if (x == std::string::npos || !parse_extent(text.substr(0, x), width) ||
        !parse_extent(text.substr(x + 1), height)) {
        error = "bad frame size \"" + text + "\": expected WIDTHxHEIGHT, each 1 to " +
                std::to_string(kMaxExtent);
        return false;
    }
    return true;
}

RawReader::RawReader(std::FILE* in, std::string name, bool owns_file, int width, int height,
                     bool v_first)
    : in_(in),
      name_(std::move(name)),
      owns_file_(owns_file),
      width_(width),
      height_(height),
      v_first_(v_first) {}

RawReader::~RawReader() {
    if (owns_file_ && in_ != nullptr) std::fclose(in_);
}

size_t RawReader::frame_bytes() const { return picture_bytes_420(width_, height_); }

long RawReader::expected_frames() const {
    struct stat info {};
    if (fstat(fileno(in_), &info) != 0 || !S_ISREG(info.st_mode)) return -1;
    return static_cast<long>(static_cast<unsigned long long>(info.st_size) / frame_bytes());
}

ReadStatus RawReader::next(Frame& frame, std::string& error) {
    if (frame.width != width_ || frame.height != height_ || frame.v_first != v_first_) {
        // The frame is sized once its first byte has arrived, not before.
        const int first = std::fgetc(in_);
        if (first == EOF) {
            if (!std::ferror(in_)) return ReadStatus::kEnd;
            error = name_ + ": read error before frame " + std::to_string(frame_number_);
            return ReadStatus::kError;
        }
        std::ungetc(first, in_);
        frame.allocate(width_, height_, v_first_);
    }
    // Luma rows, then chroma rows, each row straight into the frame.
    const size_t luma_row = static_cast<size_t>(width_);
    const size_t chroma_row = 2 * static_cast<size_t>(frame.chroma_width());
    size_t got = 0;
    bool short_read = false;
    for (int r = 0; r < height_ && !short_read; ++r) {
        uint8_t* row = &frame.y[static_cast<size_t>(r) * frame.stride];
        const size_t n = std::fread(row, 1, luma_row, in_);
        got += n;
        short_read = n != luma_row;
        if (!short_read && frame.stride > width_) row[width_] = row[width_ - 1];
    }
    for (int r = 0; r < frame.chroma_rows() && !short_read; ++r) {
        const size_t n =
            std::fread(&frame.vu[static_cast<size_t>(r) * frame.stride], 1, chroma_row, in_);
        got += n;
        short_read = n != chroma_row;
    }
    if (!short_read) {
        ++frame_number_;
        return ReadStatus::kFrame;
    }
    if (got == 0 && !std::ferror(in_)) return ReadStatus::kEnd;
    error = name_ + ": frame " + std::to_string(frame_number_) +
            " is truncated: " + std::to_string(frame_bytes() - got) + " of " +
            std::to_string(frame_bytes()) + " bytes missing";
    return ReadStatus::kError;
}

}  // namespace fingerdetect
