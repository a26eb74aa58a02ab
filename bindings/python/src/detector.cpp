#include "detector.h"

#include <cstdlib>
#include <string>

#include "MoloFingerDetect.h"
#include "buffer_planes.h"
#include "detector/working_size.h"

namespace py = pybind11;

namespace molo_python {
namespace {

constexpr char kLogProperty[] = "Molo.FingerDetection.enable.log";

// The library reads its log switch from the environment when a handle is
// created; this sets it for one creation and puts the environment back.
// Creations hold the GIL throughout, so no other creation sees the change.
class ScopedLogSwitch {
public:
    explicit ScopedLogSwitch(bool on) {
        const char* old = std::getenv(kLogProperty);
        had_old_ = old != nullptr;
        if (had_old_) old_ = old;
        setenv(kLogProperty, on ? "1" : "0", 1);
    }
    ~ScopedLogSwitch() {
        if (had_old_) {
            setenv(kLogProperty, old_.c_str(), 1);
        } else {
            unsetenv(kLogProperty);
        }
    }
    ScopedLogSwitch(const ScopedLogSwitch&) = delete;
    ScopedLogSwitch& operator=(const ScopedLogSwitch&) = delete;

private:
    bool had_old_ = false;
    std::string old_;
};

std::string size_text(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

}  // namespace

Detector::Detector(int width, int height, bool log) : width_(width), height_(height), log_(log) {
    if (width < 1 || height < 1 || width > molo::kMaxPreviewExtent ||
        height > molo::kMaxPreviewExtent) {
        throw py::value_error("unusable preview size " + size_text(width, height) +
                              ": width and height must be 1 to " +
                              std::to_string(molo::kMaxPreviewExtent));
    }
    // Uninitialised storage: its pages are only touched by frames that need a copy.
    copy_pitch_ = static_cast<std::size_t>(width + (width & 1));
    copy_.reset(new uint8_t[copy_pitch_ * (height + (height + 1) / 2)]);
    {
        ScopedLogSwitch log_switch(log);
        LogCapture capture(log ? &messages_ : nullptr);
        handle_ = MoloFinDetect_Initialize(nullptr, width, height, nullptr);
    }
    if (handle_ == nullptr) {
        throw py::value_error("the detector refused the preview size " + size_text(width, height));
    }
}

Detector::~Detector() {
    if (handle_ != nullptr) {
        LogCapture capture(nullptr);
        MoloFinDetect_Finalize(handle_, nullptr, 0);
    }
}

void Detector::check_open() {
    if (handle_ == nullptr) throw py::value_error("the detector is closed");
}

bool Detector::closed() {
    std::lock_guard<std::mutex> lock(mutex_);
    return handle_ == nullptr;
}

void Detector::close() {
    py::gil_scoped_release nogil;
    std::lock_guard<std::mutex> lock(mutex_);
    if (handle_ == nullptr) return;
    LogCapture capture(nullptr);
    MoloFinDetect_Finalize(handle_, nullptr, 0);
    handle_ = nullptr;
}

py::list Detector::messages() {
    std::lock_guard<std::mutex> lock(mutex_);
    py::list list;
    for (const Message& m : messages_) list.append(py::make_tuple(m.first, m.second));
    return list;
}

py::tuple Detector::execute(py::handle y, py::handle vu, int orientation, int ds_mode, float gain,
                            int cct) {
    const py::buffer_info y_info = uint8_buffer(y, "y");
    const py::buffer_info vu_info = uint8_buffer(vu, "vu");
    return run(luma_plane(y_info, "y", width_, height_),
               chroma_plane(vu_info, "vu", width_, height_), orientation, ds_mode, gain, cct);
}

py::tuple Detector::execute_nv21(py::handle frame, int orientation, int ds_mode, float gain,
                                 int cct) {
    const py::buffer_info info = uint8_buffer(frame, "frame");
    Plane y;
    Plane vu;
    nv21_planes(info, "frame", width_, height_, y, vu);
    return run(y, vu, orientation, ds_mode, gain, cct);
}

py::tuple Detector::run(const Plane& y, const Plane& vu, int orientation, int ds_mode, float gain,
                        int cct) {
    // The library locks a handle out for good on any other orientation.
    if (orientation != 0 && orientation != 1) {
        throw py::value_error(
            "orientation must be 0 (finger from the left) or 1 (from the "
            "right), got " +
            std::to_string(orientation));
    }
    int result = 0;
    int row = 0;
    int col = 0;
    bool open = true;
    {
        py::gil_scoped_release nogil;
        std::lock_guard<std::mutex> lock(mutex_);
        open = handle_ != nullptr;
        if (open) {
            messages_.clear();
            const uint8_t* y_data = y.data;
            const uint8_t* vu_data = vu.data;
            int pitch = static_cast<int>(y.row_step);
            if (!shares_one_pitch(y, vu, width_)) {
                uint8_t* copy_vu = copy_.get() + copy_pitch_ * height_;
                copy_plane(y, copy_.get(), copy_pitch_);
                copy_plane(vu, copy_vu, copy_pitch_);
                y_data = copy_.get();
                vu_data = copy_vu;
                pitch = static_cast<int>(copy_pitch_);
            }
            LogCapture capture(log_ ? &messages_ : nullptr);
            // The library only reads the planes.
            result = MoloFinDetect_Execute(handle_, const_cast<uint8_t*>(y_data),
                                           const_cast<uint8_t*>(vu_data), orientation, pitch,
                                           ds_mode, gain, cct, &row, &col);
        }
    }
    if (!open) check_open();
    if (result == 1) return py::make_tuple(result, row, col);
    return py::make_tuple(result, py::none(), py::none());
}

}  // namespace molo_python
