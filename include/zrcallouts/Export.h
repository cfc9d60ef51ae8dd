#pragma once
// ZR_CALLOUTS_API marks what the component exports; everything else stays inside the library.

#if defined(__GNUC__)
#define ZR_CALLOUTS_API __attribute__((visibility("default")))
#else
#define ZR_CALLOUTS_API
#endif
