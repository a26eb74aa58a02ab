#include "result_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace fingerdetect {

ResultWriter::ResultWriter(std::FILE* out, bool json) : out_(out), json_(json) {
    // Where the results start in a regular file that is not appended to by
    // others; -1 when that is unknown.
    const int fd = fileno(out);
    struct stat info {};
    const int flags = fcntl(fd, F_GETFL);
    if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && flags != -1 && (flags & O_APPEND) == 0) {
        std::fflush(out);
        start_ = lseek(fd, 0, SEEK_CUR);
    }
}

bool ResultWriter::flushed(int length, std::string& error) {
    if (length >= 0 && std::fflush(out_) == 0 && std::ferror(out_) == 0) {
        good_bytes_ += length;
        return true;
    }
    error = std::string("cannot write the results: ") + std::strerror(errno);
    // A line the system took only in part (a disk filling up) is taken back
    // from a regular file, so that the file ends with the last whole line.
    if (start_ >= 0) {
        const int saved = errno;
        if (ftruncate(fileno(out_), start_ + good_bytes_) != 0) errno = saved;
    }
    return false;
}

bool ResultWriter::begin(std::string& error) {
    static constexpr char kHeader[] = "frame,result,row,col\n";
    if (json_) return true;
    const int length = std::fputs(kHeader, out_) < 0 ? -1 : static_cast<int>(sizeof kHeader - 1);
    return flushed(length, error);
}

// A frame without a report has no position: empty CSV fields, JSON null.
bool ResultWriter::write(const FrameResult& r, std::string& error) {
    const bool reported = r.result == 1;
    int length = 0;
    if (json_) {
        if (reported) {
            length = std::fprintf(out_, "{\"frame\":%ld,\"result\":%d,\"row\":%d,\"col\":%d}\n",
                                  r.frame, r.result, r.row, r.col);
        } else {
            length = std::fprintf(out_, "{\"frame\":%ld,\"result\":%d,\"row\":null,\"col\":null}\n",
                                  r.frame, r.result);
        }
    } else if (reported) {
        length = std::fprintf(out_, "%ld,%d,%d,%d\n", r.frame, r.result, r.row, r.col);
    } else {
        length = std::fprintf(out_, "%ld,%d,,\n", r.frame, r.result);
    }
    return flushed(length, error);
}

}  // namespace fingerdetect
