// Which platform backend the log and property functions use. Android builds
// get the system log and system properties; every other build gets the
// portable host backend. MOLO_FORCE_ANDROID_BACKEND lets a host build compile
// the Android backend against stand-in platform headers, so it can be tested
// without the Android toolchain.
#ifndef MOLO_SUPPORT_PLATFORM_H
#define MOLO_SUPPORT_PLATFORM_H

#if defined(__ANDROID__) || defined(MOLO_FORCE_ANDROID_BACKEND)
#define MOLO_ANDROID_BACKEND 1
#else
#define MOLO_ANDROID_BACKEND 0
#endif

#endif  // MOLO_SUPPORT_PLATFORM_H
