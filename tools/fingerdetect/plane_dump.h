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

class Molo_FingerDetect;

namespace fingerdetect {

class PlaneDump {
public:
    // Uses dir, creating it when it does not exist. false with a reason.
    bool open(const std::string& dir, std::string& error);
    bool write(long frame, const Molo_FingerDetect& detector, std::string& error);

private:
    bool save_mask(const uint8_t* mask, int width, int height, const std::string& path,
                   std::string& error);
    std::string dir_;
    std::vector<uint8_t> scaled_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_PLANE_DUMP_H
