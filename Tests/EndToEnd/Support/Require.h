/* How a script layer in C says what it found wrong. */
#ifndef ORVANE_TESTS_END_TO_END_SUPPORT_REQUIRE_H
#define ORVANE_TESTS_END_TO_END_SUPPORT_REQUIRE_H

#include <stdio.h>
#include <stdlib.h>

#define REQUIRE(condition)                               \
    do {                                                 \
        if (!(condition)) {                              \
            fprintf(stderr, "failed: %s\n", #condition); \
            exit(1);                                     \
        }                                                \
    } while (0)

#endif
