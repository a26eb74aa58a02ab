#include "input_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace fingerdetect {

bool is_directory(std::FILE* file) {
    struct stat info {};
    return fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode);
}

std::FILE* open_for_reading(const std::string& path, std::string& error) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        error = "cannot open " + path + ": " + std::strerror(errno);
        return nullptr;
    }
    if (is_directory(file)) {
        std::fclose(file);
        error = "cannot read " + path + ": it is a directory";
        return nullptr;
    }
    return file;
}

}  // namespace fingerdetect
