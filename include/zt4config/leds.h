/* libzt4config: front-panel LEDs (kernel LED class under /sys/class/leds) and marker files. */
#ifndef ZT4CONFIG_LEDS_H
#define ZT4CONFIG_LEDS_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* Full brightness (the LED's max_brightness, cached process-wide on first use; each call drops
 * one more trailing character of the cached text) and trigger "default-on". 0, or -1. */
ZT4_API int leds_on(const char* name) ZT4_NOEXCEPT;
/* Brightness "0". 0, or -1. */
ZT4_API int leds_off(const char* name) ZT4_NOEXCEPT;
/* Trigger "timer". 0, or -1. */
ZT4_API int leds_blink(const char* name) ZT4_NOEXCEPT;
/* Trigger "heartbeat". 0, or -1. */
ZT4_API int leds_heartbeat(const char* name) ZT4_NOEXCEPT;

/* Creates the file at the caller's path, or empties it, and syncs. 0, or -1. */
ZT4_API int CreateFile(const char* path) ZT4_NOEXCEPT;
/* Removes the file at the caller's path (a missing file is success) and syncs. 0, or -1. */
ZT4_API int DeleteFile(const char* path) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_LEDS_H */
