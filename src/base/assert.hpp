// Preconditions that a header names, checked where that costs no user anything.
#pragma once

#ifdef LOTMERE_ASSERTS
#include <cstdio>
#include <cstdlib>
// Ends the program where the condition doesn't hold: in debug, sanitizer and fuzz builds, never in a release.
#define LOTMERE_ASSERT(condition)     \
  ((condition) ? static_cast<void>(0) \
               : (std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition), std::abort()))
#else
#define LOTMERE_ASSERT(condition) static_cast<void>(0)
#endif
