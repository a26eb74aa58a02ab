#include "number_text.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace fingerdetect {
namespace {

bool parse_double(const std::string& text, double& value) {
    if (text.empty() || text.find_first_of(" \t") != std::string::npos) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    return errno == 0 && end == text.c_str() + text.size() && std::isfinite(value);
}

}  // namespace

bool is_number(const std::string& text) {
    double ignored = 0;
    return parse_double(text, ignored);
}

bool parse_long(const std::string& text, long& value) {
    if (text.empty() || text.find_first_of(" \t+") != std::string::npos) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtol(text.c_str(), &end, 10);
    return errno == 0 && end == text.c_str() + text.size();
}

bool parse_gain(const std::string& text, float& value) {
    double v = 0;
    if (!parse_double(text, v) || !(v > 0.0) || v > kMaxGain) return false;
    value = static_cast<float>(v);
    return value > 0.0f;
}

bool parse_color_temp(const std::string& text, int& value) {
    double v = 0;
    if (!parse_double(text, v)) return false;
    v = std::round(v);
    if (v < kMinColorTemp || v > kMaxColorTemp) return false;
    value = static_cast<int>(v);
    return true;
}

}  // namespace fingerdetect
