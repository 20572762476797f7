/* Built by scripts/test against an installed copy of the library, with the flags from
 * `pkg-config --cflags --libs zt4config`: the header compiles as C, and the shared library that
 * gets loaded is the installed one (argv[1] is the install prefix). */
#define _GNU_SOURCE
#include <link.h>
#include <stdio.h>
#include <string.h>

#include "zt4config.h"

int debug_level = 0;

static int findLibrary(struct dl_phdr_info* info, size_t size, void* data) {
    (void)size;
    const char** found = data;
    if (info->dlpi_name && strstr(info->dlpi_name, "/libzt4config.so")) *found = info->dlpi_name;
    return 0;
}

int main(int argc, char** argv) {
    const char* prefix = argc > 1 ? argv[1] : "";
    const char* loaded = NULL;
    dl_iterate_phdr(findLibrary, &loaded);
    if (loaded == NULL) {
        fprintf(stderr, "libzt4config.so is not loaded\n");
        return 1;
    }
    if (strncmp(loaded, prefix, strlen(prefix)) != 0) {
        fprintf(stderr, "loaded %s, not the copy under %s\n", loaded, prefix);
        return 1;
    }
    printf("installed library %s loaded; zt4Data is %u bytes\n", loaded, (unsigned)sizeof(zt4Data));
    return 0;
}
