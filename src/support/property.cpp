// android_property_get: the system property on Android; elsewhere the
// environment variable of the same name, or of the name with dots replaced by
// underscores (shells cannot export dotted names).
#include <cstdlib>
#include <cstring>
#include <string>

#include "molo/support.h"
#include "support/platform.h"

#if MOLO_ANDROID_BACKEND
#include <sys/system_properties.h>
#endif

namespace {

constexpr size_t kPropertyValueMax = 92;

#if !MOLO_ANDROID_BACKEND
int host_property_get(const char* name, char* value) {
    const char* found = std::getenv(name);
    if (found == nullptr) {
        std::string underscored(name);
        for (char& ch : underscored) {
            if (ch == '.') ch = '_';
        }
        found = std::getenv(underscored.c_str());
    }
    value[0] = '\0';
    if (found == nullptr) return 0;
    size_t len = std::strlen(found);
    if (len > kPropertyValueMax - 1) len = kPropertyValueMax - 1;
    std::memcpy(value, found, len);
    value[len] = '\0';
    return static_cast<int>(len);
}
#endif

}  // namespace

int android_property_get(const char* name, char* value, const char* default_value) {
#if MOLO_ANDROID_BACKEND
    const int len = __system_property_get(name, value);
#else
    const int len = host_property_get(name, value);
#endif
    if (len == 0 && default_value != nullptr) {
        std::strncpy(value, default_value, kPropertyValueMax - 1);
        value[kPropertyValueMax - 1] = '\0';
    }
    return len;
}
