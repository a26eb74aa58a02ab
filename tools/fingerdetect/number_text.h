// Numbers as they are written on the command line and in meta files: the
// whole text must be the number, with nothing before or after it.
#ifndef MOLO_TOOL_NUMBER_TEXT_H
#define MOLO_TOOL_NUMBER_TEXT_H

#include <string>

namespace fingerdetect {

// Accepted colour temperatures in kelvin.
constexpr int kMinColorTemp = 1000;
constexpr int kMaxColorTemp = 40000;
// Largest accepted sensor gain.
constexpr float kMaxGain = 1000.0f;

// Any finite decimal number ("+0", "1.5", "2e3").
bool is_number(const std::string& text);
// A decimal integer.
bool parse_long(const std::string& text, long& value);
// A finite number above 0 and at most kMaxGain that stays above 0 as a
// float, the type the detector takes.
bool parse_gain(const std::string& text, float& value);
// A number of kelvin from kMinColorTemp to kMaxColorTemp, rounded to whole
// kelvin when written with a fraction.
bool parse_color_temp(const std::string& text, int& value);

}  // namespace fingerdetect

#endif  // MOLO_TOOL_NUMBER_TEXT_H
