/* Preloaded after libfiu's POSIX wrappers: fails exactly one call of one libc function.
 *   ZT4_FAULT_POINTS  libfiu points, comma-separated: every call through them is counted
 *   ZT4_FAULT_POINT   the point whose call fails (absent: calls are only counted)
 *   ZT4_FAULT_NTH     which call of that point fails, from 1
 *   ZT4_FAULT_ERRNO   the errno it gives (ENOSPC when absent)
 *   ZT4_FAULT_REPORT  file that receives "POINT COUNT" lines at exit
 * sync(2) does nothing here (it would flush every file system of the machine, thousands of
 * times). The variables and LD_PRELOAD leave the environment at start, so that a program the
 * tested one starts (the calibration writers' cp) runs without faults. */
#define FIU_ENABLE 1
#include <errno.h>
#include <fiu-control.h>
#include <fiu.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kMaxPoints = 32, kMaxName = 64 };

static char names[kMaxPoints][kMaxName], report[512];
static unsigned long counts[kMaxPoints], failingCall;
static int pointCount, failing = -1;

static int decide(const char* name, int* failnum, void** failinfo, unsigned int* flags) {
    (void)failnum, (void)failinfo, (void)flags;
    for (int i = 0; i < pointCount; ++i)
        if (strcmp(names[i], name) == 0) return ++counts[i] == failingCall && i == failing;
    return 0;
}

void sync(void) {}

__attribute__((constructor)) static void arm(void) {
    const char* list = getenv("ZT4_FAULT_POINTS");
    const char* point = getenv("ZT4_FAULT_POINT");
    const char* nth = getenv("ZT4_FAULT_NTH");
    const char* err = getenv("ZT4_FAULT_ERRNO");
    const char* out = getenv("ZT4_FAULT_REPORT");
    if (list == NULL) return;
    const long error = err != NULL ? strtol(err, NULL, 10) : ENOSPC;
    failingCall = nth != NULL ? strtoul(nth, NULL, 10) : 0;
    if (out != NULL) snprintf(report, sizeof report, "%s", out);
    fiu_init(0);
    static char copy[kMaxPoints * kMaxName];
    snprintf(copy, sizeof copy, "%s", list);
    char* save = NULL;
    for (char* name = strtok_r(copy, ",", &save); name != NULL && pointCount < kMaxPoints; name = strtok_r(NULL, ",", &save)) {
        snprintf(names[pointCount], kMaxName, "%s", name);
        if (point != NULL && strcmp(name, point) == 0) failing = pointCount;
        fiu_enable_external(names[pointCount++], 1, (void*)(intptr_t)error, 0, decide);
    }
    for (const char* const* v = (const char* const[]){"LD_PRELOAD", "ZT4_FAULT_POINTS", "ZT4_FAULT_POINT", "ZT4_FAULT_NTH",
                                                      "ZT4_FAULT_ERRNO", "ZT4_FAULT_REPORT", NULL}; *v != NULL; ++v)
        unsetenv(*v);
}

__attribute__((destructor)) static void tell(void) {
    if (pointCount == 0 || report[0] == '\0') return;
    /* No more faults or counting: the report itself opens and writes. */
    for (int i = 0; i < pointCount; ++i) fiu_disable(names[i]);
    FILE* file = fopen(report, "w");
    if (file == NULL) return;
    for (int i = 0; i < pointCount; ++i) fprintf(file, "%s %lu\n", names[i], counts[i]);
    fclose(file);
}
