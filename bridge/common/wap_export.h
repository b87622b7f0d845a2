#ifndef WAP_COMMON_EXPORT_H
#define WAP_COMMON_EXPORT_H

/// Marks what the library shows to others; exports.map must name it too.
#define WAP_EXPORT extern "C" __attribute__((visibility("default")))

#endif
