// Symbol visibility of the library: everything is hidden unless marked.
#ifndef MOLO_EXPORT_H
#define MOLO_EXPORT_H

#if defined(_WIN32)
#define MOLO_EXPORT
#else
#define MOLO_EXPORT __attribute__((visibility("default")))
#endif

#endif  // MOLO_EXPORT_H
