#pragma once

/* Marks what the shared library offers to applications; everything else stays inside. */
#if defined(__GNUC__)
#define VI_EXPORT __attribute__((visibility("default")))
#else
#define VI_EXPORT
#endif
