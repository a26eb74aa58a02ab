#include "debug/diagnostics.h"

#include <cstdio>

#include "support/log.h"

namespace molo {

void vprint_diagnostic(const char* format, va_list args) { std::vfprintf(stderr, format, args); }

void print_diagnostic(const char* format, ...) {
    va_list args;
    va_start(args, format);
    vprint_diagnostic(format, args);
    va_end(args);
}

void log_diagnostic(const char* text) { log_print(kLogError, "%s", text); }

}  // namespace molo
