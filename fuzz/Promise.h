#pragma once

#include <cstdio>
#include <cstdlib>

/// What a target promises whatever the bytes; a broken promise counts like a crash.
inline void require(bool kept, const char *promise)
{
    if (kept)
        return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}
