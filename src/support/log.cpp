#include "support/log.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "support/platform.h"

#if MOLO_ANDROID_BACKEND
#include <android/log.h>
#endif

namespace molo {
namespace {

constexpr const char* kTag = "MOLO_FINGERDETECT";

// Messages may come from row-loop workers at once; one lock keeps lines whole
// and keeps the hook and its context consistent.
std::mutex g_log_mutex;
LogHook g_hook = nullptr;
void* g_hook_context = nullptr;

void write_platform(int priority, const char* text) {
#if MOLO_ANDROID_BACKEND
    __android_log_print(priority, kTag, "%s", text);
#else
    size_t len = std::strlen(text);
    if (len > 0 && text[len - 1] == '\n') --len;
    const char level = priority == kLogError ? 'E' : 'D';
    std::fprintf(stderr, "%c/%s: %.*s\n", level, kTag, static_cast<int>(len), text);
#endif
}

}  // namespace

void log_print(int priority, const char* format, ...) {
    char text[1024];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);

    std::lock_guard<std::mutex> lock(g_log_mutex);
    if (g_hook != nullptr) {
        g_hook(g_hook_context, priority, text);
    } else {
        write_platform(priority, text);
    }
}

void set_log_hook(LogHook hook, void* context) {
    std::lock_guard<std::mutex> lock(g_log_mutex);
    g_hook = hook;
    g_hook_context = context;
}

}  // namespace molo
