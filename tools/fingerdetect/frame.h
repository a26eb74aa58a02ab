// One preview frame as the detector takes it: a luma plane and a
// half-resolution interleaved chroma plane sharing one row pitch.
#ifndef MOLO_TOOL_FRAME_H
#define MOLO_TOOL_FRAME_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fingerdetect {

// Largest width or height the tool reads; the detector accepts no more.
constexpr int kMaxExtent = 16384;

struct Frame {
    int width = 0;
    int height = 0;
    // Row pitch of both planes: the width rounded up to even, so that an odd
    // width still holds whole chroma pairs.
    int stride = 0;
    // true: chroma pairs are V then U (NV21); false: U then V (NV12).
    bool v_first = true;
    std::vector<uint8_t> y;   // height rows of stride bytes
    std::vector<uint8_t> vu;  // chroma_rows() rows of stride bytes

    // Sizes the planes for a width x height picture (contents left as they are).
    void allocate(int w, int h, bool chroma_v_first = true);
    int chroma_width() const { return (width + 1) / 2; }
    int chroma_rows() const { return (height + 1) / 2; }
    // The ds_mode argument that makes the detector read these pairs correctly.
    int ds_mode() const { return v_first ? 1 : 0; }
};

// A width or height written in decimal digits only, 1 to kMaxExtent.
bool parse_extent(const std::string& digits, int& value);

// Bytes of one 4:2:0 picture of the given size: luma plus two chroma planes
// of half the width and half the height, each rounded up.
size_t picture_bytes_420(int width, int height);

// Interleaves planar 4:2:0 chroma (u and v planes of chroma_width() x
// chroma_rows() bytes each) into the frame's chroma plane, V before U, and
// marks the frame NV21. The luma plane is copied row by row.
void frame_from_planar_420(const uint8_t* y, const uint8_t* u, const uint8_t* v, Frame& frame);

// The reverse: writes the frame as planar 4:2:0 (Y, then U, then V, each
// without padding) into out, which must hold picture_bytes_420 bytes.
void planar_420_from_frame(const Frame& frame, uint8_t* out);

}  // namespace fingerdetect

#endif  // MOLO_TOOL_FRAME_H
