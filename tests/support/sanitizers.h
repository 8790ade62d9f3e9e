#pragma once

// TONVEX_ADDRESS_SANITIZER and TONVEX_THREAD_SANITIZER are defined in builds with that sanitizer. One
// compiler tells by a macro, the other by a feature.

#ifdef __has_feature
#if __has_feature(address_sanitizer)
#define TONVEX_ADDRESS_SANITIZER
#endif
#if __has_feature(thread_sanitizer)
#define TONVEX_THREAD_SANITIZER
#endif
#endif

#ifdef __SANITIZE_ADDRESS__
#define TONVEX_ADDRESS_SANITIZER
#endif
#ifdef __SANITIZE_THREAD__
#define TONVEX_THREAD_SANITIZER
#endif
