// Per-frame camera state from a CSV file with the columns frame, gain and
// colour temperature, as a camera reports them. Each row holds from its frame
// until the next row; frames before the first row keep the run's defaults.
// Rows are read as the frames reach them, a line at a time, so the file may
// be as long as the clip, or a pipe fed alongside a live stream.
#ifndef MOLO_TOOL_META_FILE_H
#define MOLO_TOOL_META_FILE_H

#include <cstdio>
#include <string>

namespace fingerdetect {

struct CameraState {
    float gain = 1.0f;      // sensor gain, 1.0 = unity
    int color_temp = 5000;  // white-balance colour temperature in kelvin
};

class MetaTrack {
public:
    MetaTrack() = default;
    ~MetaTrack();
    MetaTrack(const MetaTrack&) = delete;
    MetaTrack& operator=(const MetaTrack&) = delete;

    // Reads from in, which the track closes when owns_file is set; name
    // prefixes the messages ("NAME:LINE: reason"). Reads up to the first row,
    // so that a file without rows or with a bad first row is refused before
    // any frame. A UTF-8 byte-order mark is skipped, and so are blank lines,
    // lines starting with '#' and a first row none of whose fields is a
    // number (a header).
    bool open(std::FILE* in, std::string name, bool owns_file, std::string& error);
    // Opens and starts reading a file.
    bool load(const std::string& path, std::string& error);

    // The state that applies to frame: the last row at or before it, else
    // fallback; without a file, always fallback. Frames are asked in
    // increasing order. false with "NAME:LINE: reason" when a row read on
    // the way is bad.
    bool at(long frame, const CameraState& fallback, CameraState& state, std::string& error);

private:
    struct Row {
        long frame = 0;
        CameraState state;
    };
    // Reads the next row into next_; has_next_ false at the end of the file.
    bool read_row(std::string& error);

    std::FILE* in_ = nullptr;
    std::string name_;
    bool owns_file_ = false;
    int line_number_ = 0;
    bool seen_row_ = false;
    bool has_current_ = false;
    Row current_;
    bool has_next_ = false;
    Row next_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_META_FILE_H
