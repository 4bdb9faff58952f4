// What must hold whatever the input is.
#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process with the place when a promise is broken, which is a finding.
#define FUZZ_PROMISE(holds)                                                             \
    do {                                                                                \
        if (!(holds)) {                                                                 \
            fprintf(stderr, "%s:%d: broken promise: %s\n", __FILE__, __LINE__, #holds); \
            abort();                                                                    \
        }                                                                               \
    } while (false)
