/* libzt4config: typed checks of one key of a JSON object.
 *
 * Each check tests the member `key` of `json`, logs at LOG_ERR exactly what is wrong (under the
 * check's own name) and returns 0 when the key passes, -1 when it does not. The object is
 * borrowed and never modified: no default is inserted, no value corrected.
 */
#ifndef ZT4CONFIG_JSON_CHECKS_H
#define ZT4CONFIG_JSON_CHECKS_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* 0 when the member is an integer equal to `expected`, else -1. */
ZT4_API int json_check_integer_default(const json_t* json, const char* key, int32_t expected) ZT4_NOEXCEPT;
/* 0 when the member is an integer >= `minimum`, else -1. */
ZT4_API int json_check_integer_superior(const json_t* json, const char* key, int32_t minimum) ZT4_NOEXCEPT;
/* 0 when the member is an integer within [`minimum`, `maximum`], else -1. */
ZT4_API int json_check_integer_range(const json_t* json, const char* key, int32_t minimum, int32_t maximum) ZT4_NOEXCEPT;
/* 0 when the member is a real or an integer >= `minimum`, else -1. */
ZT4_API int json_check_float_superior(const json_t* json, const char* key, float minimum) ZT4_NOEXCEPT;
/* 0 when the member is a real or an integer > `minimum`, else -1. */
ZT4_API int json_check_float_superior_strict(const json_t* json, const char* key, float minimum) ZT4_NOEXCEPT;
/* 0 when the member is the integer 0 or 1 (JSON true/false are refused), else -1. */
ZT4_API int json_check_boolean(const json_t* json, const char* key) ZT4_NOEXCEPT;
/* 0 when the member is a string whose first 31 characters equal `expected`, else -1. */
ZT4_API int json_check_string_default(const json_t* json, const char* key, const char* expected) ZT4_NOEXCEPT;
/* 0 when the member is a string that inet_pton(AF_INET) accepts, else -1. */
ZT4_API int json_check_ipv4(const json_t* json, const char* key) ZT4_NOEXCEPT;
/* 0 when the member is a string beginning with "Static" or "DHCP", else -1. */
ZT4_API int json_check_ipv4_addressing(const json_t* json, const char* key) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_JSON_CHECKS_H */
