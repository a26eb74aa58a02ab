#include "plane_dump.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "MoloFingerDetect.h"

namespace fingerdetect {
namespace {

// The dump functions take non-const paths.
std::vector<char> c_path(const std::string& path) {
    std::vector<char> text(path.begin(), path.end());
    text.push_back('\0');
    return text;
}

bool saved(int close_result, const std::string& path, std::string& error) {
    if (close_result == 0) return true;
    error = "cannot write " + path;
    return false;
}

}  // namespace

bool PlaneDump::open(const std::string& dir, std::string& error) {
    struct stat info {};
    if (stat(dir.c_str(), &info) == 0) {
        if (!S_ISDIR(info.st_mode)) {
            error = "--dump: " + dir + " exists and is not a directory";
            return false;
        }
    } else if (mkdir(dir.c_str(), 0777) != 0) {
        error = "--dump: cannot create " + dir + ": " + std::strerror(errno);
        return false;
    }
    dir_ = dir;
    return true;
}

bool PlaneDump::save_mask(const uint8_t* mask, int width, int height, const std::string& path,
                          std::string& error) {
    const size_t n = static_cast<size_t>(width) * height;
    scaled_.resize(n);
    for (size_t i = 0; i < n; ++i) scaled_[i] = mask[i] != 0 ? 255 : 0;
    return saved(TIFF_SaveY(scaled_.data(), width, height, c_path(path).data()), path, error);
}

bool PlaneDump::write(long frame, const Molo_FingerDetect& d, std::string& error) {
    const int w = d.down_width;
    const int h = d.down_height;
    if (w <= 0 || h <= 0) return true;  // a frame too small for any working cell
    char stem[32];
    std::snprintf(stem, sizeof stem, "frame_%06ld_", frame);
    const std::string base = dir_ + "/" + stem;

    const std::string luma = base + "luma.tif";
    if (!saved(TIFF_SaveY(d.down_y, w, h, c_path(luma).data()), luma, error)) return false;
    const std::string colour = base + "colour.tif";
    if (!saved(TIFF_Save_YUV2RGB(d.down_y, d.down_vu, w, h, c_path(colour).data()), colour,
               error)) {
        return false;
    }
    return save_mask(d.skin_mask, w, h, base + "skin.tif", error) &&
           save_mask(d.finger_mask, w, h, base + "finger.tif", error) &&
           save_mask(d.edge_map, w, h, base + "outline.tif", error);
}

}  // namespace fingerdetect
