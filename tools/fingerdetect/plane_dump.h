// Writes the detector's working planes of every frame as TIFF pictures,
// through the library's own dump functions, for looking at what the
// detector saw. Per frame N, in the dump directory:
//   frame_N_luma.tif     working luma (down_y)
//   frame_N_colour.tif   working luma and chroma as an RGB picture
//   frame_N_skin.tif     skin mask: 255 where the colour matched and the luma is flat
//   frame_N_finger.tif   finger mask: 255 on the candidate region
//   frame_N_outline.tif  outline of the candidate: 255 on its edge cells
// All are working size (an eighth of the frame each way, made even). The
// skin mask is that of the last colour entry tried on the frame. The finger
// mask and outline are current on held and reported frames and on frames
// rejected by the corner-and-line check; other frames leave them as the last
// frame that got that far.
#ifndef MOLO_TOOL_PLANE_DUMP_H
#define MOLO_TOOL_PLANE_DUMP_H

#include <cstdint>
#include <string>
#include <vector>

#include "output_guard.h"

class Molo_FingerDetect;

namespace fingerdetect {

// True for a file name the dump writes: frame_N_PLANE.tif.
bool is_dump_name(const std::string& name);

class PlaneDump {
public:
    // Uses dir, creating it when it does not exist. false with a reason. Every
    // file is checked against guard just before it is written.
    bool open(const std::string& dir, const OutputGuard& guard, std::string& error);
    // false with "cannot write PATH: REASON" (or the guard's reason) at the
    // first file that fails.
    bool write(long frame, const Molo_FingerDetect& detector, std::string& error);

private:
    // Runs one of the library's dump functions on path.
    template <typename Save>
    bool save(const std::string& path, Save save_to, std::string& error);
    bool save_mask(const uint8_t* mask, int width, int height, const std::string& path,
                   std::string& error);
    std::string dir_;
    const OutputGuard* guard_ = nullptr;
    std::vector<uint8_t> scaled_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_PLANE_DUMP_H
