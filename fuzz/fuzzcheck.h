#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

// A broken invariant is a crash for libFuzzer: it keeps the input and stops.
#define FUZZ_CHECK(condition, detail)                                                                                  \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "%s:%d: %s failed: %s\n", __FILE__, __LINE__, #condition,                             \
                         std::string(detail).c_str());                                                                 \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)

// The same environment as the test programs: New York time, US English texts.
inline void fuzzEnvironment()
{
    setenv("TZ", "America/New_York", 1);
    setenv("LANG", "en_US.UTF-8", 1);
    setenv("LC_ALL", "en_US.UTF-8", 1);
}
