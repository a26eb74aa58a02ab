// Stand-in for the Android NDK's <sys/system_properties.h>: the one call the
// library's property backend uses.
#ifndef MOLO_STANDIN_SYS_SYSTEM_PROPERTIES_H
#define MOLO_STANDIN_SYS_SYSTEM_PROPERTIES_H

#define PROP_VALUE_MAX 92

#ifdef __cplusplus
extern "C" {
#endif

int __system_property_get(const char* name, char* value);

#ifdef __cplusplus
}
#endif

#endif  // MOLO_STANDIN_SYS_SYSTEM_PROPERTIES_H
