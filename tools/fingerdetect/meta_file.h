// Per-frame camera state from a CSV file with the columns frame, gain and
// colour temperature, as a camera reports them. Each row holds from its frame
// until the next row; frames before the first row keep the run's defaults.
#ifndef MOLO_TOOL_META_FILE_H
#define MOLO_TOOL_META_FILE_H

#include <string>
#include <vector>

namespace fingerdetect {

struct CameraState {
    float gain = 1.0f;      // sensor gain, 1.0 = unity
    int color_temp = 5000;  // white-balance colour temperature in kelvin
};

class MetaTrack {
public:
    // Parses the text of a meta file; name prefixes the messages
    // ("NAME:LINE: reason"). Blank lines and lines starting with '#' are
    // skipped, and so is a first row that is not numeric (a header).
    bool parse(const std::string& text, const std::string& name, std::string& error);
    // Reads and parses a file.
    bool load(const std::string& path, std::string& error);

    // The state that applies to frame: the last row at or before it, else
    // fallback.
    CameraState at(long frame, const CameraState& fallback) const;
    size_t rows() const { return rows_.size(); }

private:
    struct Row {
        long frame;
        CameraState state;
    };
    std::vector<Row> rows_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_META_FILE_H
