#include "meta_file.h"

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "input_file.h"
#include "number_text.h"

namespace fingerdetect {
namespace {

// Longer lines are refused rather than held: a row is a few numbers.
constexpr size_t kMaxLine = 1024;
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

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

bool any_number(const std::vector<std::string>& fields) {
    for (const std::string& field : fields) {
        if (is_number(field)) return true;
    }
    return false;
}

}  // namespace

MetaTrack::~MetaTrack() {
    if (owns_file_ && in_ != nullptr) std::fclose(in_);
}

bool MetaTrack::load(const std::string& path, std::string& error) {
    std::FILE* file = open_for_reading(path, error);
    return file != nullptr && open(file, path, true, error);
}

bool MetaTrack::open(std::FILE* in, std::string name, bool owns_file, std::string& error) {
    in_ = in;
    name_ = std::move(name);
    owns_file_ = owns_file;
    if (!read_row(error)) return false;
    if (!has_next_) {
        error = name_ + ": no rows (expected lines of frame, gain, colour temperature)";
        return false;
    }
    return true;
}

bool MetaTrack::read_row(std::string& error) {
    const long previous = has_next_ ? next_.frame : -1;
    has_next_ = false;
    if (in_ == nullptr) return true;
    for (;;) {
        std::string line;
        int ch = 0;
        while ((ch = std::fgetc(in_)) != EOF && ch != '\n') {
            if (line.size() == kMaxLine) {
                error = name_ + ":" + std::to_string(line_number_ + 1) + ": line longer than " +
                        std::to_string(kMaxLine) + " bytes";
                return false;
            }
            line.push_back(static_cast<char>(ch));
        }
        if (std::ferror(in_)) {
            error = name_ + ": cannot read: " + std::strerror(errno);
            return false;
        }
        if (ch == EOF && line.empty()) return true;
        ++line_number_;
        if (line_number_ == 1 && line.compare(0, 3, kByteOrderMark) == 0) line.erase(0, 3);
        const std::string content = trim(line);
        if (content.empty() || content[0] == '#') continue;
        const std::string where = name_ + ":" + std::to_string(line_number_) + ": ";
        const std::vector<std::string> fields = split_fields(content);
        // Only the first row may be a header ("frame,gain,cct"), and only when
        // none of its fields is a number: a row with a typo in one field is
        // refused, not skipped.
        const bool first_row = !seen_row_;
        seen_row_ = true;
        if (first_row && !any_number(fields)) continue;
        if (fields.size() != 3) {
            error = where + "expected 3 fields (frame, gain, colour temperature), found " +
                    std::to_string(fields.size());
            return false;
        }
        Row row;
        if (!parse_long(fields[0], row.frame) || row.frame < 0) {
            error = where + "bad frame number \"" + fields[0] + "\"";
            return false;
        }
        if (row.frame <= previous) {
            error = where + "frame " + fields[0] + " does not follow frame " +
                    std::to_string(previous) + " (rows must be in increasing frame order)";
            return false;
        }
        if (!parse_gain(fields[1], row.state.gain)) {
            error = where + "bad gain \"" + fields[1] + "\" (a number above 0)";
            return false;
        }
        if (!parse_color_temp(fields[2], row.state.color_temp)) {
            error = where + "bad colour temperature \"" + fields[2] + "\" (kelvin, " +
                    std::to_string(kMinColorTemp) + " to " + std::to_string(kMaxColorTemp) + ")";
            return false;
        }
        next_ = row;
        has_next_ = true;
        return true;
    }
}

bool MetaTrack::at(long frame, const CameraState& fallback, CameraState& state,
                   std::string& error) {
    while (has_next_ && next_.frame <= frame) {
        current_ = next_;
        has_current_ = true;
        if (!read_row(error)) return false;
    }
    state = has_current_ ? current_.state : fallback;
    return true;
}

}  // namespace fingerdetect
