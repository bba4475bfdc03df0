// Assertions of the exported contract: they guard programming errors of the caller, in every build.
#pragma once

#include <cstdio>
#include <cstdlib>

// text is the condition as the contract words it.
#define CONTRACT_ASSERT(unit, condition, text)                                 \
    do {                                                                       \
        if (!(condition)) {                                                    \
            std::fprintf(stderr, "%s: assertion \"%s\" failed\n", unit, text); \
            std::abort();                                                      \
        }                                                                      \
    } while (false)
