/* Runs writers that the tool does not offer as the tool would: "fault_driver --root DIR OPERATION",
 * messages on stderr, exit status 0, 1 or 2 (usage). OPERATION: "create DEVICE_PATH" (CreateFile),
 * "energies" (SetZT4AllEnergyIndex) or "counter NAME" (a counter writer), from an image whose word
 * at address a holds (a * 7 + 0x1234) & 0xFFFF. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <syslog.h>

#include "zt4config.h"

int debug_level = 0;

int main(int argc, char** argv) {
    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    static const struct {
        const char* name;
        int (*write)(const uint16_t*);
    } counters[] = {{"operating-time", SetZT4FRAMOperatingTime}, {"startup", SetZT4FRAMStartup}, {"sag", SetZT4FRAMSag},
                    {"swell", SetZT4FRAMSwell}, {"over-current", SetZT4FRAMOverCurrent}};
    char path[4096];
    if (argc < 4 || strcmp(argv[1], "--root") != 0 || setenv("ZT4_ROOT", argv[2], 1) != 0) return 2;
    openlog("fault_driver", LOG_PERROR, LOG_USER);
    for (unsigned a = 0; a < ZT4_MODBUS_IMAGE_WORDS; ++a) image[a] = (uint16_t)(a * 7 + 0x1234);
    if (argc == 5 && strcmp(argv[3], "create") == 0 && snprintf(path, sizeof path, "%s%s", argv[2], argv[4]) < (int)sizeof path)
        return CreateFile(path) == 0 ? 0 : 1;
    if (argc == 4 && strcmp(argv[3], "energies") == 0) return SetZT4AllEnergyIndex(image) == 0 ? 0 : 1;
    for (size_t i = 0; argc == 5 && strcmp(argv[3], "counter") == 0 && i < sizeof counters / sizeof counters[0]; ++i)
        if (strcmp(argv[4], counters[i].name) == 0) return counters[i].write(image) == 0 ? 0 : 1;
    fprintf(stderr, "usage: %s --root DIR (create DEVICE_PATH | energies | counter NAME)\n", argv[0]);
    return 2;
}
