#include "meta_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include "number_text.h"

namespace fingerdetect {
namespace {

std::string trim(const std::string& text) {
    const size_t begin = text.find_first_not_of(" \t\r");
    if (begin == std::string::npos) return "";
    const size_t end = text.find_last_not_of(" \t\r");
    return text.substr(begin, end - begin + 1);
}

std::vector<std::string> split_fields(const std::string& line) {
    std::vector<std::string> fields;
    size_t start = 0;
    for (;;) {
        const size_t comma = line.find(',', start);
        fields.push_back(trim(line.substr(start, comma - start)));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return fields;
}

}  // namespace

bool MetaTrack::parse(const std::string& text, const std::string& name, std::string& error) {
    rows_.clear();
    std::istringstream in(text);
    std::string line;
    int line_number = 0;
    bool first_row = true;
    while (std::getline(in, line)) {
        ++line_number;
        const std::string content = trim(line);
        if (content.empty() || content[0] == '#') continue;
        const std::string where = name + ":" + std::to_string(line_number) + ": ";
        const std::vector<std::string> fields = split_fields(content);
        long frame = 0;
        const bool numeric_start = parse_long(fields[0], frame);
        if (first_row && !numeric_start) {
            first_row = false;  // a header row such as "frame,gain,cct"
            continue;
        }
        first_row = false;
        if (fields.size() != 3) {
            error = where + "expected 3 fields (frame, gain, colour temperature), found " +
                    std::to_string(fields.size());
            return false;
        }
        if (!numeric_start || frame < 0) {
            error = where + "bad frame number \"" + fields[0] + "\"";
            return false;
        }
        if (!rows_.empty() && frame <= rows_.back().frame) {
            error = where + "frame " + fields[0] + " does not follow frame " +
                    std::to_string(rows_.back().frame) +
                    " (rows must be in increasing frame order)";
            return false;
        }
        Row row{frame, {}};
        if (!parse_gain(fields[1], row.state.gain)) {
            error = where + "bad gain \"" + fields[1] + "\" (a number above 0)";
            return false;
        }
        if (!parse_color_temp(fields[2], row.state.color_temp)) {
            error = where + "bad colour temperature \"" + fields[2] + "\" (kelvin, " +
                    std::to_string(kMinColorTemp) + " to " + std::to_string(kMaxColorTemp) + ")";
            return false;
        }
        rows_.push_back(row);
    }
    if (rows_.empty()) {
        error = name + ": no rows (expected lines of frame, gain, colour temperature)";
        return false;
    }
    return true;
}

bool MetaTrack::load(const std::string& path, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = "cannot open " + path + ": " + std::strerror(errno);
        return false;
    }
    std::ostringstream text;
    text << file.rdbuf();
    if (file.bad()) {
        error = "cannot read " + path;
        return false;
    }
    return parse(text.str(), path, error);
}

CameraState MetaTrack::at(long frame, const CameraState& fallback) const {
    auto after = std::upper_bound(rows_.begin(), rows_.end(), frame,
                                  [](long f, const Row& row) { return f < row.frame; });
    if (after == rows_.begin()) return fallback;
    return std::prev(after)->state;
}

}  // namespace fingerdetect
