#include "plane_dump.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "MoloFingerDetect.h"

namespace fingerdetect {
namespace {

constexpr const char* kPlanes[] = {"luma", "colour", "skin", "finger", "outline"};

// The dump functions take non-const paths.
std::vector<char> c_path(const std::string& path) {
    std::vector<char> text(path.begin(), path.end());
    text.push_back('\0');
    return text;
}

}  // namespace

bool is_dump_name(const std::string& name) {
    const std::string prefix = "frame_";
    if (name.compare(0, prefix.size(), prefix) != 0) return false;
    size_t pos = prefix.size();
    const size_t digits = pos;
    while (pos < name.size() && name[pos] >= '0' && name[pos] <= '9') ++pos;
    if (pos - digits < 6 || pos >= name.size() || name[pos] != '_') return false;
    const std::string rest = name.substr(pos + 1);
    for (const char* plane : kPlanes) {
        if (rest == std::string(plane) + ".tif") return true;
    }
    return false;
}

bool PlaneDump::open(const std::string& dir, const OutputGuard& guard, std::string& error) {
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
    guard_ = &guard;
    return true;
}

template <typename Save>
bool PlaneDump::save(const std::string& path, Save save_to, std::string& error) {
    if (!guard_->may_write(path, error)) {
        error = "--dump: " + error;
        return false;
    }
    errno = 0;
    if (save_to(c_path(path).data()) == 0) return true;
    // The library keeps the failing call's errno; a refused size sets none.
    error = "cannot write " + path;
    if (errno != 0) error += std::string(": ") + std::strerror(errno);
    return false;
}

bool PlaneDump::save_mask(const uint8_t* mask, int width, int height, const std::string& path,
                          std::string& error) {
    const size_t n = static_cast<size_t>(width) * height;
    scaled_.resize(n);
    for (size_t i = 0; i < n; ++i) scaled_[i] = mask[i] != 0 ? 255 : 0;
    return save(
        path, [&](char* p) { return TIFF_SaveY(scaled_.data(), width, height, p); }, error);
}

bool PlaneDump::write(long frame, const Molo_FingerDetect& d, std::string& error) {
    const int w = d.down_width;
    const int h = d.down_height;
    if (w <= 0 || h <= 0) return true;  // a frame too small for any working cell
    char stem[32];
    std::snprintf(stem, sizeof stem, "frame_%06ld_", frame);
    const std::string base = dir_ + "/" + stem;
    return save(
               base + kPlanes[0] + ".tif", [&](char* p) { return TIFF_SaveY(d.down_y, w, h, p); },
               error) &&
           save(
               base + kPlanes[1] + ".tif",
               [&](char* p) { return TIFF_Save_YUV2RGB(d.down_y, d.down_vu, w, h, p); }, error) &&
           save_mask(d.skin_mask, w, h, base + kPlanes[2] + ".tif", error) &&
           save_mask(d.finger_mask, w, h, base + kPlanes[3] + ".tif", error) &&
           save_mask(d.edge_map, w, h, base + kPlanes[4] + ".tif", error);
}

}  // namespace fingerdetect
