#include "tiff_list_reader.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <utility>

#include "MoloFingerDetect.h"
#include "input_file.h"

namespace fingerdetect {
namespace {

struct TiffInfo {
    int width = 0;
    int height = 0;
    char type = 0;
};

// Reads the picture once to learn its size and type. false with a reason.
bool inspect(const std::string& path, TiffInfo& info, std::string& error) {
    std::FILE* fp = open_for_reading(path, error);
    if (fp == nullptr) return false;
    TIFF_IMG img{};
    const int failed = read_TIFF(fp, &img);
    std::fclose(fp);
    if (failed != 0) {
        error = path + " is not a TIFF picture this tool can read (uncompressed TIFF only)";
        return false;
    }
    info.width = img.width;
    info.height = img.height;
    info.type = img.TIFF_type;
    free_TIFF(&img);
    return true;
}

std::string size_text(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

}  // namespace

bool is_tiff_path(const std::string& path) {
    std::string lower;
    for (char ch : path)
        lower.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(ch))));
    auto ends_with = [&](const char* suffix) {
        const size_t n = std::strlen(suffix);
        return lower.size() >= n && lower.compare(lower.size() - n, n, suffix) == 0;
    };
    return ends_with(".tif") || ends_with(".tiff");
}

TiffListReader::TiffListReader(std::vector<std::string> paths) : paths_(std::move(paths)) {}

bool TiffListReader::start(std::string& error) {
    if (paths_.empty()) {
        error = "no TIFF pictures given";
        return false;
    }
    TiffInfo info;
    if (!inspect(paths_[0], info, error)) return false;
    if (info.type != 'c') {
        error = paths_[0] + " is not a colour (RGB) picture: the frames must be colour TIFFs";
        return false;
    }
    if (info.width % 2 != 0 || info.height % 2 != 0 || info.width > kMaxExtent ||
        info.height > kMaxExtent) {
        error = paths_[0] + " is " + size_text(info.width, info.height) +
                ": TIFF frames need an even width and height, at most " +
                std::to_string(kMaxExtent);
        return false;
    }
    width_ = info.width;
    height_ = info.height;
    return true;
}

ReadStatus TiffListReader::next(Frame& frame, std::string& error) {
    if (next_index_ >= paths_.size()) return ReadStatus::kEnd;
    const std::string& path = paths_[next_index_];
    if (frame.width != width_ || frame.height != height_ || !frame.v_first) {
        frame.allocate(width_, height_);
    }
    std::vector<char> writable(path.begin(), path.end());
    writable.push_back('\0');
    if (TIFF_readYUV(frame.y.data(), frame.vu.data(), width_, height_, writable.data()) != 0) {
        // Say what is wrong with the picture rather than only that it failed.
        TiffInfo info;
        std::string reason;
        if (!inspect(path, info, reason)) {
            error = "frame " + std::to_string(next_index_) + ": " + reason;
        } else if (info.type != 'c') {
            error = "frame " + std::to_string(next_index_) + ": " + path +
                    " is not a colour (RGB) picture";
        } else {
            error = "frame " + std::to_string(next_index_) + ": " + path + " is " +
                    size_text(info.width, info.height) + ", the clip is " +
                    size_text(width_, height_);
        }
        return ReadStatus::kError;
    }
    ++next_index_;
    return ReadStatus::kFrame;
}

}  // namespace fingerdetect
