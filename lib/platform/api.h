// Marks what lib/platform's library shows to others.
#pragma once

#if defined(_WIN32)
#if defined(LW_PLATFORM_BUILD)
#define PLATFORM_API __declspec(dllexport)
#else
#define PLATFORM_API __declspec(dllimport)
#endif
#else
#define PLATFORM_API __attribute__((visibility("default")))
#endif
