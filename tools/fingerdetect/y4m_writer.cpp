#include "y4m_writer.h"

#include <cerrno>
#include <cstring>

#include "frame.h"

namespace fingerdetect {

Y4mWriter::~Y4mWriter() {
    if (out_ != nullptr) std::fclose(out_);
}

bool Y4mWriter::open(const std::string& path, int width, int height, int rate_num, int rate_den,
                     std::string& error) {
    out_ = std::fopen(path.c_str(), "wb");
    if (out_ == nullptr) {
        error = "cannot create " + path + ": " + std::strerror(errno);
        return false;
    }
    path_ = path;
    picture_bytes_ = picture_bytes_420(width, height);
    // Flushed at once, so that a file that cannot be written is refused
    // before the first frame.
    if (std::fprintf(out_, "YUV4MPEG2 W%d H%d F%d:%d Ip A1:1 C420jpeg\n", width, height, rate_num,
                     rate_den) < 0 ||
        std::fflush(out_) != 0) {
        error = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

bool Y4mWriter::write(const uint8_t* picture, std::string& error) {
    if (std::fputs("FRAME\n", out_) < 0 ||
        std::fwrite(picture, 1, picture_bytes_, out_) != picture_bytes_ || std::fflush(out_) != 0) {
        error = "cannot write " + path_ + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

bool Y4mWriter::close(std::string& error) {
    if (out_ == nullptr) return true;
    const bool failed = std::ferror(out_) != 0;
    const bool close_failed = std::fclose(out_) != 0;
    out_ = nullptr;
    if (failed || close_failed) {
        error = "cannot write " + path_ + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

}  // namespace fingerdetect
