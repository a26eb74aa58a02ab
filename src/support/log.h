// Diagnostic log of the library. On Android it goes to the system log under
// the tag "MOLO_FINGERDETECT"; elsewhere each message is one line on stderr.
#ifndef MOLO_SUPPORT_LOG_H
#define MOLO_SUPPORT_LOG_H

namespace molo {

enum LogPriority { kLogDebug = 3, kLogError = 6 };

// printf-style message at the given priority.
void log_print(int priority, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Receives every message, fully formatted (trailing newline included), in the
// order it was logged. While a hook is installed the platform log is not used.
using LogHook = void (*)(void* context, int priority, const char* text);
void set_log_hook(LogHook hook, void* context);

}  // namespace molo

#endif  // MOLO_SUPPORT_LOG_H
