/* A C program that includes the exported header, links against the shared library and calls it:
 * proves the header is plain C and the exported names have C linkage. */
#include <stdio.h>
#include <string.h>

#include "zt4config.h"

int debug_level = 0;

static int failures = 0;
static int checks = 0;

static void expect(int condition, const char* what) {
    checks++;
    if (!condition) {
        fprintf(stderr, "failed: %s\n", what);
        failures++;
    }
}

int main(void) {
    expect(sizeof(zt4Data) == 3281, "zt4Data is 3281 bytes");
    expect(strcmp(getNameMode(2), "Triphase with neutral") == 0, "getNameMode(2)");
    expect(getAmpsPlier(4) == 200, "getAmpsPlier(4)");
    expect(isConnectorValid(7) == -1, "isConnectorValid(7)");
    expect(LockReadFile(-1, "x") == -1, "LockReadFile(-1)");
    expect(getConfigRadioKey16(NULL, NULL, 0) == -1, "getConfigRadioKey16(NULL)");
    expect(setConfigRadio(NULL, NULL) == -1, "setConfigRadio(NULL)");
    printf("%d passed, %d failed\n", checks - failures, failures);
    return failures == 0 ? 0 : 1;
}
