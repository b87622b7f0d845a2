#ifndef WAP_COMMON_EXPORT_H
#define WAP_COMMON_EXPORT_H

/// Marks what the library shows to others; exports.map must name it too.
#define WAP_VISIBLE __attribute__((visibility("default")))
#define WAP_EXPORT extern "C" WAP_VISIBLE

#endif
