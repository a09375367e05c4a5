#pragma once

#include <cstdio>
#include <cstdlib>

// What must hold for every input; a fuzzer sees the abort.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
