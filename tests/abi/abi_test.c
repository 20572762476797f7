/* A C program that includes the exported header and links against the shared library. */
#include <stdio.h>
#include <string.h>

#include "zt4config.h"

int debug_level = 0;

int main(void) {
    int failures = 0;
    if (sizeof(zt4Data) != 3281) {
        fprintf(stderr, "zt4Data is %u bytes\n", (unsigned)sizeof(zt4Data));
        failures++;
    }
    printf("%d passed, %d failed\n", failures == 0, failures != 0);
    return failures == 0 ? 0 : 1;
}
