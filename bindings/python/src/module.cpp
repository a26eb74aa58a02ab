// molo_fingerdetect._core: the detector for Python.
#include <pybind11/pybind11.h>

#include "detector.h"
#include "log_capture.h"
#include "prep/parallel_rows.h"

namespace py = pybind11;
using molo_python::Detector;

PYBIND11_MODULE(_core, m) {
    m.doc() = "Finger-on-lens detector over NV21 frames held in numpy arrays.";
    py::options options;
    options.disable_function_signatures();  // the docstrings give them in Python's terms
    molo_python::install_log_hook();
    // The row loops read MOLO_THREADS from the environment on first use;
    // reading it now keeps that away from the log switch a creation sets.
    molo::execution_contexts();

    py::class_<Detector>(m, "Detector", R"doc(
Detector(width, height, log=False)

One detector for frames of width x height pixels (1 to 16384 each), to be
given every frame in capture order. Usable as a context manager; close()
releases it and may be called again; any call after it raises ValueError.
With log=True the detector's diagnostic messages of each call are kept in
messages. One call runs at a time on a detector; separate detectors run in
parallel, the GIL released while they work.)doc")
        .def(py::init<int, int, bool>(), py::arg("width"), py::arg("height"),
             py::arg("log") = false)
        .def("execute", &Detector::execute, py::arg("y"), py::arg("vu"), py::arg("orientation") = 0,
             py::arg("ds_mode") = 1, py::arg("gain") = 1.0f, py::arg("cct") = 5000, R"doc(
execute(y, vu, orientation=0, ds_mode=1, gain=1.0, cct=5000) -> (result, row, col)

Analyses one frame. y: uint8 array of height x width; vu: the interleaved
chroma, uint8 of (height+1)//2 x 2*((width+1)//2) or (height+1)//2 x
(width+1)//2 x 2. Any strides; planes with unit column steps and one common
row stride are read in place, others copied. orientation: the side the
finger enters from, 0 left or 1 right; anything else raises ValueError (the
detector itself would stop working for good). ds_mode 1: chroma pairs are
V,U (NV21); any other value: U,V. gain: sensor gain, 1.0 = unity; cct:
white-balance colour temperature in kelvin. result is 1 when a finger is
reported, with its centroid (row, col) in frame pixels, else 0 with None.)doc")
        .def("execute_nv21", &Detector::execute_nv21, py::arg("frame"), py::arg("orientation") = 0,
             py::arg("ds_mode") = 1, py::arg("gain") = 1.0f, py::arg("cct") = 5000, R"doc(
execute_nv21(frame, orientation=0, ds_mode=1, gain=1.0, cct=5000) -> (result, row, col)

execute() on one packed NV21 frame: bytes or a 1-D uint8 array of
width*height luma bytes followed by the chroma rows, or (even widths) a 2-D
uint8 array of height + (height+1)//2 rows of width bytes.)doc")
        .def("close", &Detector::close,
             "close()\n\nReleases the detector; later calls raise ValueError.")
        .def("__enter__", [](py::object self) { return self; })
        .def("__exit__",
             [](Detector& d, py::handle, py::handle, py::handle) {
                 d.close();
                 return false;
             })
        .def_property_readonly("width", &Detector::width)
        .def_property_readonly("height", &Detector::height)
        .def_property_readonly("closed", &Detector::closed)
        .def_property_readonly("messages", &Detector::messages,
                               "(priority, text) of each message logged during the last call "
                               "(creation included); empty unless created with log=True.");
}
