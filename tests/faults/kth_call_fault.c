/* Preloaded next to libfiu's POSIX wrappers (fiu_posix_preload.so): fails exactly one call of
 * one libc function, so that a run of a program can be repeated with each of its calls failing
 * in turn.
 *
 *   ZT4_FAULT_POINTS  libfiu point names separated by commas ("posix/io/rw/write,..."): every
 *                     call through them is counted
 *   ZT4_FAULT_POINT   the point whose call fails (absent: nothing fails, calls are only counted)
 *   ZT4_FAULT_NTH     which call of that point fails, from 1
 *   ZT4_FAULT_ERRNO   the errno the failing call gives (ENOSPC when absent)
 *   ZT4_FAULT_REPORT  file that receives "POINT COUNT" lines at exit
 *
 * sync(2) cannot fail and flushes every file system of the machine: here it does nothing, which
 * keeps thousands of runs fast (the order of syncs and renames is checked with strace instead).
 *
 * The variables and LD_PRELOAD are removed from the environment at start, so that a program the
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

static char names[kMaxPoints][kMaxName];
static unsigned long counts[kMaxPoints];
static int pointCount;
static int failing = -1;
static unsigned long failingCall;
static char report[512];

static int decide(const char* name, int* failnum, void** failinfo, unsigned int* flags) {
    (void)failnum;
    (void)failinfo;
    (void)flags;
    for (int i = 0; i < pointCount; ++i) {
        if (strcmp(names[i], name) != 0) continue;
        ++counts[i];
        return i == failing && counts[i] == failingCall;
    }
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
    const char* cursor = list;
    while (*cursor != '\0' && pointCount < kMaxPoints) {
        size_t length = strcspn(cursor, ",");
        if (length > 0 && length < kMaxName) {
            memcpy(names[pointCount], cursor, length);
            names[pointCount][length] = '\0';
            if (point != NULL && strcmp(names[pointCount], point) == 0) failing = pointCount;
            fiu_enable_external(names[pointCount], 1, (void*)(intptr_t)error, 0, decide);
            ++pointCount;
        }
        cursor += length;
        if (*cursor == ',') ++cursor;
    }
    unsetenv("LD_PRELOAD");
    unsetenv("ZT4_FAULT_POINTS");
    unsetenv("ZT4_FAULT_POINT");
    unsetenv("ZT4_FAULT_NTH");
    unsetenv("ZT4_FAULT_ERRNO");
    unsetenv("ZT4_FAULT_REPORT");
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
