/* libzt4config: JSON access and document files.
 *
 * Documents are parsed with duplicate keys rejected and NUL allowed, and written in insertion
 * order, ASCII only, indented by 17 spaces. Connectors are numbered 1 to 6, channels and phases
 * 1 to 3; element n of an array is at index n-1.
 */
#ifndef ZT4CONFIG_JSON_H
#define ZT4CONFIG_JSON_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* Member `key` of `json` when it is an object: new reference; NULL otherwise. */
ZT4_API json_t* readJSONObject(json_t* json, const char* key) ZT4_NOEXCEPT;
/* Member `key` of `json` when it is an array: new reference; NULL otherwise. */
ZT4_API json_t* readJSONArray(json_t* json, const char* key) ZT4_NOEXCEPT;

/* Connector `id` (1 to 6) of a connectors array when it is an object: new reference; NULL otherwise. */
ZT4_API json_t* readJSONZT4ConnectorById(json_t* jsonConnectors, uint8_t id) ZT4_NOEXCEPT;
/* Channel `id` (1 to 3) of a channels array when it is an object: new reference; NULL otherwise. */
ZT4_API json_t* readJSONZT4ChannelById(json_t* jsonChannels, uint8_t id) ZT4_NOEXCEPT;
/* Phase `id` (1 to 3) of a phases array when it is an object: new reference; NULL otherwise. */
ZT4_API json_t* readJSONZT4PhaseById(json_t* jsonPhases, uint8_t id) ZT4_NOEXCEPT;

/* The document in the (existing, writable) file `path`: new reference; NULL on failure. */
ZT4_API json_t* readJSONFile(const char* path) ZT4_NOEXCEPT;
/* Writes `json` (borrowed) to `path`, truncating it, then flushes and syncs: 0 or -1. */
ZT4_API int writeJSONFile(const char* path, json_t* json) ZT4_NOEXCEPT;
/* Parses a NUL-terminated text: new reference; NULL on failure (logged as a warning). */
ZT4_API json_t* JSONify(const char* text) ZT4_NOEXCEPT;
/* Logs `json` (borrowed) compactly, after "label:", when debug_level is above 2; returns nothing. */
ZT4_API void printJSON(json_t* json, const char* label) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_JSON_H */
