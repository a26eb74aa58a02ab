#include "y4m_reader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <utility>

namespace fingerdetect {
namespace {

constexpr char kMagic[] = "YUV4MPEG2";
constexpr size_t kMaxHeaderLine = 65536;
constexpr size_t kMaxFrameLine = 4096;
constexpr char kSupported[] =
    "only progressive 4:2:0 (C420jpeg, C420mpeg2, C420paldv, C420, or no C tag) is read; "
    "convert with ffmpeg -pix_fmt yuv420p";

enum class LineStatus { kLine, kEmpty, kUnterminated, kTooLong };

// Reads up to and including the next newline; the newline is not stored.
LineStatus read_line(std::FILE* in, size_t limit, std::string& line) {
    line.clear();
    for (;;) {
        const int ch = std::fgetc(in);
        if (ch == EOF) return line.empty() ? LineStatus::kEmpty : LineStatus::kUnterminated;
        if (ch == '\n') return LineStatus::kLine;
        if (line.size() >= limit) return LineStatus::kTooLong;
        line.push_back(static_cast<char>(ch));
    }
}

// The start of a text for a message, with unprintable bytes shown as '?'.
std::string excerpt(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size() && i < 24; ++i) {
        const unsigned char ch = static_cast<unsigned char>(text[i]);
        out.push_back(std::isprint(ch) ? static_cast<char>(ch) : '?');
    }
    if (text.size() > 24) out += "...";
    return out;
}

// "N:D" with non-negative decimal numbers.
bool parse_ratio(const std::string& text, int& num, int& den) {
    const size_t colon = text.find(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) return false;
    long parts[2] = {0, 0};
    const std::string halves[2] = {text.substr(0, colon), text.substr(colon + 1)};
    for (int k = 0; k < 2; ++k) {
        if (halves[k].size() > 9) return false;
        for (char ch : halves[k]) {
            if (!std::isdigit(static_cast<unsigned char>(ch))) return false;
            parts[k] = parts[k] * 10 + (ch - '0');
        }
    }
    num = static_cast<int>(parts[0]);
    den = static_cast<int>(parts[1]);
    return true;
}

bool is_420(const std::string& chroma) {
    return chroma.empty() || chroma == "420" || chroma == "420jpeg" || chroma == "420mpeg2" ||
           chroma == "420paldv";
}

}  // namespace

bool parse_y4m_header(const std::string& line, Y4mHeader& header, std::string& error) {
    header = Y4mHeader{};
    const size_t magic_len = sizeof kMagic - 1;
    if (line.compare(0, magic_len, kMagic) != 0 ||
        (line.size() > magic_len && line[magic_len] != ' ')) {
        error = "not a YUV4MPEG2 stream (it starts with \"" + excerpt(line) + "\")";
        return false;
    }
    bool have_width = false;
    bool have_height = false;
    size_t pos = magic_len;
    while (pos < line.size()) {
        if (line[pos] == ' ') {
            ++pos;
            continue;
        }
        size_t end = line.find(' ', pos);
        if (end == std::string::npos) end = line.size();
        const std::string token = line.substr(pos, end - pos);
        pos = end;
        const char tag = token[0];
        const std::string value = token.substr(1);
        switch (tag) {
            case 'W':
            case 'H':
                if (!parse_extent(value, tag == 'W' ? header.width : header.height)) {
                    error = std::string("bad ") + (tag == 'W' ? "width" : "height") + " \"" +
                            excerpt(token) + "\" in the YUV4MPEG2 header (1 to " +
                            std::to_string(kMaxExtent) + ")";
                    return false;
                }
                (tag == 'W' ? have_width : have_height) = true;
                break;
            case 'F':
                if (!parse_ratio(value, header.rate_num, header.rate_den)) {
                    error = "bad frame rate \"" + excerpt(token) + "\" in the YUV4MPEG2 header";
                    return false;
                }
                break;
            case 'A':
                if (!parse_ratio(value, header.aspect_num, header.aspect_den)) {
                    error = "bad pixel aspect \"" + excerpt(token) + "\" in the YUV4MPEG2 header";
                    return false;
                }
                break;
            case 'I':
                if (value == "t" || value == "b" || value == "m") {
                    error = "interlaced YUV4MPEG2 streams (I" + value +
                            ") are not supported: " + kSupported + " -vf yadif";
                    return false;
                }
                if (value != "p" && value != "?") {
                    error = "bad interlacing \"" + excerpt(token) + "\" in the YUV4MPEG2 header";
                    return false;
                }
                break;
            case 'C':
                if (value.empty() || !is_420(value)) {
                    error =
                        "chroma layout \"" + excerpt(token) + "\" is not supported: " + kSupported;
                    return false;
                }
                header.chroma = value;
                break;
            default: break;  // X comments and parameters this reader does not need
        }
    }
    if (!have_width || !have_height) {
        error = std::string("the YUV4MPEG2 header has no ") +
                (have_width ? "H (height)" : "W (width)") + " parameter";
        return false;
    }
    return true;
}

Y4mReader::Y4mReader(std::FILE* in, std::string name, bool owns_file)
    : in_(in), name_(std::move(name)), owns_file_(owns_file) {}

Y4mReader::~Y4mReader() {
    if (owns_file_ && in_ != nullptr) std::fclose(in_);
}

bool Y4mReader::start(std::string& error) {
    std::string line;
    switch (read_line(in_, kMaxHeaderLine, line)) {
        case LineStatus::kEmpty:
            error = name_ +
                    " is empty: expected a YUV4MPEG2 stream (from ffmpeg: -pix_fmt yuv420p "
                    "-f yuv4mpegpipe -)";
            return false;
        case LineStatus::kTooLong:
            error = name_ + ": the YUV4MPEG2 header line is longer than " +
                    std::to_string(kMaxHeaderLine) + " bytes";
            return false;
        case LineStatus::kUnterminated:
            if (line.compare(0, sizeof kMagic - 1, kMagic) == 0) {
                error = name_ + ": the stream ends inside its YUV4MPEG2 header";
                return false;
            }
            break;  // reported below as not a stream
        case LineStatus::kLine: break;
    }
    if (!parse_y4m_header(line, header_, error)) {
        error = name_ + ": " + error;
        return false;
    }
    picture_bytes_ = picture_bytes_420(header_.width, header_.height);

    // A file's length gives the frame count when no frame carries parameters.
    struct stat info {};
    const long pos = std::ftell(in_);
    if (pos >= 0 && fstat(fileno(in_), &info) == 0 && S_ISREG(info.st_mode)) {
        const long long per_frame = 6 + static_cast<long long>(picture_bytes_);
        expected_frames_ = static_cast<long>((info.st_size - pos) / per_frame);
    }
    return true;
}

void Y4mReader::frame_rate(int& num, int& den) const {
    if (header_.rate_num > 0 && header_.rate_den > 0) {
        num = header_.rate_num;
        den = header_.rate_den;
    } else {
        FrameSource::frame_rate(num, den);
    }
}

ReadStatus Y4mReader::next(Frame& frame, std::string& error) {
    const std::string frame_name = "frame " + std::to_string(frame_number_);
    std::string line;
    switch (read_line(in_, kMaxFrameLine, line)) {
        case LineStatus::kEmpty:
            if (std::ferror(in_)) {
                error = name_ + ": read error before " + frame_name;
                return ReadStatus::kError;
            }
            return ReadStatus::kEnd;
        case LineStatus::kUnterminated:
            if (line.compare(0, 5, "FRAME") == 0 ||
                std::string("FRAME").compare(0, line.size(), line) == 0) {
                error = name_ + ": " + frame_name +
                        " is truncated: the stream ends inside its FRAME "
                        "marker, all " +
                        std::to_string(picture_bytes_) + " bytes of the picture missing";
                return ReadStatus::kError;
            }
            break;  // reported below as a bad marker
        case LineStatus::kTooLong:
            error = name_ + ": " + frame_name + ": FRAME marker line longer than " +
                    std::to_string(kMaxFrameLine) + " bytes";
            return ReadStatus::kError;
        case LineStatus::kLine: break;
    }
    if (line.compare(0, 5, "FRAME") != 0 || (line.size() > 5 && line[5] != ' ')) {
        error = name_ + ": " + frame_name + ": expected a FRAME marker, found \"" + excerpt(line) +
                "\"";
        return ReadStatus::kError;
    }
    // The first picture's buffer grows with the bytes that arrive, so that a
    // header announcing a huge picture costs nothing until the picture does.
    size_t got = 0;
    for (;;) {
        if (got == picture_.size() && got < picture_bytes_) {
            picture_.resize(std::min(picture_bytes_, std::max<size_t>(2 * got, 1 << 16)));
        }
        const size_t want = std::min(picture_.size(), picture_bytes_) - got;
        const size_t n = std::fread(picture_.data() + got, 1, want, in_);
        got += n;
        if (n < want || got == picture_bytes_) break;
    }
    if (got != picture_bytes_) {
        error = name_ + ": " + frame_name +
                " is truncated: " + std::to_string(picture_bytes_ - got) + " of " +
                std::to_string(picture_bytes_) + " bytes missing";
        return ReadStatus::kError;
    }
    if (frame.width != header_.width || frame.height != header_.height) {
        frame.allocate(header_.width, header_.height);
    }
    const uint8_t* y = picture_.data();
    const uint8_t* u = y + static_cast<size_t>(header_.width) * header_.height;
    const uint8_t* v = u + static_cast<size_t>(frame.chroma_width()) * frame.chroma_rows();
    frame_from_planar_420(y, u, v, frame);
    ++frame_number_;
    return ReadStatus::kFrame;
}

}  // namespace fingerdetect
