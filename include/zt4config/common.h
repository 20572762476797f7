/* libzt4config: what every family header shares.
 *
 * Conventions of the whole API:
 * - Functions return 0 on success and -1 on failure, or a pointer that is NULL on failure, unless
 *   the line above a declaration says otherwise.
 * - json_t* results are new references: the caller releases them with json_decref().
 *   json_t* arguments are borrowed: the library never releases them.
 * - Failures are logged with syslog(3); the library never calls openlog(3).
 * - No function throws: every exported function is noexcept.
 */
#ifndef ZT4CONFIG_COMMON_H
#define ZT4CONFIG_COMMON_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include <jansson.h>

#if defined(__GNUC__)
#define ZT4_API __attribute__((visibility("default")))
#define ZT4_PACKED __attribute__((packed))
#else
#define ZT4_API
#define ZT4_PACKED
#endif

#ifdef __cplusplus
#define ZT4_NOEXCEPT noexcept
#define ZT4_BEGIN_DECLS extern "C" {
#define ZT4_END_DECLS }
#define ZT4_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define ZT4_NOEXCEPT
#define ZT4_BEGIN_DECLS
#define ZT4_END_DECLS
#define ZT4_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

ZT4_BEGIN_DECLS

/* The host program defines this variable (the library only reads it): trace lines are logged
 * only above the thresholds each operation documents. */
extern int debug_level;

ZT4_END_DECLS

#endif /* ZT4CONFIG_COMMON_H */
