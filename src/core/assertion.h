// Assertions of the exported contract: they guard programming errors of the caller, in every build.
#pragma once

#include <cstdio>
#include <cstdlib>

#define CONTRACT_ASSERT(unit, condition)                                             \
    do {                                                                             \
        if (!(condition)) {                                                          \
            std::fprintf(stderr, "%s: assertion \"%s\" failed\n", unit, #condition); \
            std::abort();                                                            \
        }                                                                            \
    } while (false)
