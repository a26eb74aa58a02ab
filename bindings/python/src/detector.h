// One detector handle behind a Python object. Frames are read where they lie
// when both planes share one row pitch with packed rows; any other layout is
// copied into a buffer the detector owns, reserved at creation, so a frame
// allocates nothing in native code but the messages kept when logging. The GIL is released while
// the library runs; a lock keeps one call at a time on a handle.
#ifndef MOLO_PYTHON_DETECTOR_H
#define MOLO_PYTHON_DETECTOR_H

#include <pybind11/pybind11.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "log_capture.h"
#include "plane.h"

namespace molo_python {

class Detector {
public:
    Detector(int width, int height, bool log);
    ~Detector();
    Detector(const Detector&) = delete;
    Detector& operator=(const Detector&) = delete;

    // (result, row, col), row and col None unless result is 1.
    pybind11::tuple execute(pybind11::handle y, pybind11::handle vu, int orientation, int ds_mode,
                            float gain, int cct);
    pybind11::tuple execute_nv21(pybind11::handle frame, int orientation, int ds_mode, float gain,
                                 int cct);
    void close();

    int width() const { return width_; }
    int height() const { return height_; }
    bool closed();
    // What the library logged during the last call, as (priority, text).
    pybind11::list messages();

private:
    pybind11::tuple run(const Plane& y, const Plane& vu, int orientation, int ds_mode, float gain,
                        int cct);
    void check_open();

    const int width_;
    const int height_;
    const bool log_;
    std::mutex mutex_;  // one library call at a time; never held while waiting for the GIL
    void* handle_ = nullptr;
    std::size_t copy_pitch_ = 0;
    std::unique_ptr<uint8_t[]> copy_;  // luma rows, then chroma rows, copy_pitch_ apart
    std::vector<Message> messages_;
};

}  // namespace molo_python

#endif  // MOLO_PYTHON_DETECTOR_H
