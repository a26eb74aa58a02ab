// Stand-in for the Android NDK's <android/log.h>: the declarations the
// library's log backend and its test use, with the NDK's names and values.
#ifndef MOLO_STANDIN_ANDROID_LOG_H
#define MOLO_STANDIN_ANDROID_LOG_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum android_LogPriority {
    ANDROID_LOG_DEBUG = 3,
    ANDROID_LOG_ERROR = 6,
} android_LogPriority;

int __android_log_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif  // MOLO_STANDIN_ANDROID_LOG_H
