// Opening the files the tool reads, with one message for each way it fails.
#ifndef MOLO_TOOL_INPUT_FILE_H
#define MOLO_TOOL_INPUT_FILE_H

#include <cstdio>
#include <string>

namespace fingerdetect {

// True when file is open on a directory. fopen accepts a directory for
// reading on Linux and only the reads fail, with a reason that misleads
// ("is empty", "not a TIFF picture"), so every reader asks first.
bool is_directory(std::FILE* file);

// Opens path for reading in binary mode. nullptr with "cannot open PATH:
// REASON" or "cannot read PATH: it is a directory" otherwise.
std::FILE* open_for_reading(const std::string& path, std::string& error);

}  // namespace fingerdetect

#endif  // MOLO_TOOL_INPUT_FILE_H
