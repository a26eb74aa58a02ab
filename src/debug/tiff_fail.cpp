// The failure message of the TIFF reader and writer: the step, then the reason.
#include <cstdarg>

#include "debug/diagnostics.h"
#include "debug/tiff_format.h"

namespace molo {

int tiff_fail(const char* step, const char* reason_format, ...) {
    print_diagnostic("tiff:  function %s:\n", step);
    va_list args;
    va_start(args, reason_format);
    vprint_diagnostic(reason_format, args);
    va_end(args);
    return 1;
}

}  // namespace molo
