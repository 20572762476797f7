/* Runs CreateFile, which the command-line tool does not offer, the way the tool runs its
 * commands: "create_file_driver --root DIR DEVICE_PATH" creates or empties DIR/DEVICE_PATH, the
 * library's messages go to stderr, the exit status is 0 or 1. */
#include <stdio.h>
#include <string.h>
#include <syslog.h>

#include "zt4config.h"

int debug_level = 0;

int main(int argc, char** argv) {
    if (argc != 4 || strcmp(argv[1], "--root") != 0) {
        fprintf(stderr, "usage: %s --root DIR DEVICE_PATH\n", argv[0]);
        return 2;
    }
    char path[4096];
    if (snprintf(path, sizeof path, "%s%s", argv[2], argv[3]) >= (int)sizeof path) return 2;
    openlog("create_file_driver", LOG_PERROR, LOG_USER);
    return CreateFile(path) == 0 ? 0 : 1;
}
