// The sanitizers that a program is built with, whichever compiler it is: g++ tells them with macros
// of its own, clang as features.
#ifndef WAP_TESTS_SUPPORT_SANITIZERS_H
#define WAP_TESTS_SUPPORT_SANITIZERS_H

#if defined(__SANITIZE_ADDRESS__)
#define WAP_ADDRESS_SANITIZER
#elif defined(__SANITIZE_THREAD__)
#define WAP_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define WAP_ADDRESS_SANITIZER
#elif __has_feature(thread_sanitizer)
#define WAP_THREAD_SANITIZER
#endif
#endif

#endif
