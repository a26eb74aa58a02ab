#include "buffer_planes.h"

#include <string>

namespace py = pybind11;

namespace molo_python {
namespace {

std::string shape_text(const py::buffer_info& info) {
    std::string text = "(";
    for (py::ssize_t k = 0; k < info.ndim; ++k) {
        if (k > 0) text += ", ";
        text += std::to_string(info.shape[k]);
    }
    return text + (info.ndim == 1 ? ",)" : ")");
}

[[noreturn]] void wrong_shape(const char* name, const std::string& expected,
                              const py::buffer_info& info) {
    throw py::value_error(std::string(name) + " must be " + expected + ", got shape " +
                          shape_text(info));
}

int chroma_rows(int height) { return (height + 1) / 2; }
int chroma_bytes(int width) { return 2 * ((width + 1) / 2); }

}  // namespace

py::buffer_info uint8_buffer(py::handle obj, const char* name) {
    if (!PyObject_CheckBuffer(obj.ptr())) {
        throw py::type_error(std::string(name) + " must be a uint8 numpy array or bytes, not " +
                             std::string(py::str(py::type::handle_of(obj).attr("__name__"))));
    }
    py::buffer_info info = py::reinterpret_borrow<py::buffer>(obj).request();
    if (info.itemsize != 1 || (info.format != "B" && info.format != "=B" && info.format != "<B")) {
        const std::string type = py::hasattr(obj, "dtype") ? std::string(py::str(obj.attr("dtype")))
                                                           : "format '" + info.format + "'";
        throw py::type_error(std::string(name) + " must hold uint8 values, got " + type);
    }
    return info;
}

Plane luma_plane(const py::buffer_info& info, const char* name, int width, int height) {
    const std::string expected =
        "a 2-D array of shape (" + std::to_string(height) + ", " + std::to_string(width) + ")";
    if (info.ndim != 2 || info.shape[0] != height || info.shape[1] != width) {
        wrong_shape(name, expected, info);
    }
    Plane plane;
    plane.data = static_cast<const uint8_t*>(info.ptr);
    plane.rows = height;
    plane.cols = width;
    plane.row_step = info.strides[0];
    plane.byte_step = info.strides[1];
    plane.pair_step = 2 * info.strides[1];
    return plane;
}

Plane chroma_plane(const py::buffer_info& info, const char* name, int width, int height) {
    const int rows = chroma_rows(height);
    const int bytes = chroma_bytes(width);
    Plane plane;
    plane.data = static_cast<const uint8_t*>(info.ptr);
    plane.rows = rows;
    plane.cols = bytes;
    if (info.ndim == 2 && info.shape[0] == rows && info.shape[1] == bytes) {
        plane.row_step = info.strides[0];
        plane.byte_step = info.strides[1];
        plane.pair_step = 2 * info.strides[1];
    } else if (info.ndim == 3 && info.shape[0] == rows && info.shape[1] == bytes / 2 &&
               info.shape[2] == 2) {
        plane.row_step = info.strides[0];
        plane.pair_step = info.strides[1];
        plane.byte_step = info.strides[2];
    } else {
        const std::string r = std::to_string(rows);
        wrong_shape(name,
                    "a 2-D array of shape (" + r + ", " + std::to_string(bytes) +
                        ") or a 3-D array of shape (" + r + ", " + std::to_string(bytes / 2) +
                        ", 2)",
                    info);
    }
    return plane;
}

void nv21_planes(const py::buffer_info& info, const char* name, int width, int height, Plane& y,
                 Plane& vu) {
    const int rows = chroma_rows(height);
    const int bytes = chroma_bytes(width);
    const auto* data = static_cast<const uint8_t*>(info.ptr);
    if (info.ndim == 1) {
        const py::ssize_t total =
            static_cast<py::ssize_t>(width) * height + static_cast<py::ssize_t>(bytes) * rows;
        if (info.shape[0] != total) {
            wrong_shape(name, "1-D of " + std::to_string(total) + " bytes", info);
        }
        const py::ssize_t step = info.strides[0];
        y = Plane{data, height, width, width * step, 2 * step, step};
        vu = Plane{data + static_cast<py::ssize_t>(width) * height * step,
                   rows,
                   bytes,
                   bytes * step,
                   2 * step,
                   step};
        return;
    }
    if (info.ndim == 2 && width % 2 == 0 && info.shape[0] == height + rows &&
        info.shape[1] == width) {
        const py::ssize_t row_step = info.strides[0];
        const py::ssize_t step = info.strides[1];
        y = Plane{data, height, width, row_step, 2 * step, step};
        vu = Plane{data + height * row_step, rows, bytes, row_step, 2 * step, step};
        return;
    }
    std::string expected = "1-D";
    if (width % 2 == 0) {
        expected += " or a 2-D array of shape (" + std::to_string(height + rows) + ", " +
                    std::to_string(width) + ")";
    } else {
        expected += " (an odd width gives chroma rows longer than luma rows)";
    }
    wrong_shape(name, expected, info);
}

}  // namespace molo_python
