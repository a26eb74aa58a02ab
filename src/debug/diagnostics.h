// The debug files' two diagnostic channels, each behind one function.
//
// Standard error, through print_diagnostic: the TIFF reader and writer
// (get_TIFF, read_TIFF, write_TIFF; their step-and-reason messages go through
// tiff_fail), and the dump writers' own checks (open_debug_file, for every
// dump and read-back file that cannot be opened, and TIFF_SaveY_Scale's
// divisor). A read-back file that read_TIFF refuses is reported here too.
//
// The library's log at error priority, through log_diagnostic: the read-back
// functions TIFF_readY and TIFF_readYUV, for a file of the wrong size or type.
#ifndef MOLO_DEBUG_DIAGNOSTICS_H
#define MOLO_DEBUG_DIAGNOSTICS_H

#include <cstdarg>

namespace molo {

// printf-style text on standard error, as it is (no prefix, no newline added).
void print_diagnostic(const char* format, ...) __attribute__((format(printf, 1, 2)));
void vprint_diagnostic(const char* format, va_list args);

// One message of the read-back functions on the log, at error priority.
void log_diagnostic(const char* text);

}  // namespace molo

#endif  // MOLO_DEBUG_DIAGNOSTICS_H
