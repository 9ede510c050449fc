// Linkage of the vendor platform subset. On Windows these names come from the vendor's and the
// system's libraries; here the headless platform's shared library exports them.
#pragma once

#if defined(_WIN32)
#  define KD_PLATFORM_API __declspec(dllimport)
#elif defined(KD_BUILDING_PLATFORM)
#  define KD_PLATFORM_API __attribute__((visibility("default")))
#else
#  define KD_PLATFORM_API __attribute__((visibility("default")))
#endif
