#include <sys/time.h>

#include "molo/support.h"

long long timestamp(long long* out) {
    struct timeval tv;
    gettimeofday(&tv, nullptr);
    const long long ms = static_cast<long long>(tv.tv_sec) * 1000 + tv.tv_usec / 1000;
    *out = ms;
    return ms;
}
