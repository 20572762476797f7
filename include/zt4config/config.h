/* libzt4config: the configuration documents and the syntax-version facade.
 *
 * Four documents: the user configuration "/home/nvram/zt4config.json", the system configuration
 * "/home/nvram/zt4system.json" and their factory copies "/etc/zt4config_factory.json" and
 * "/etc/zt4system_factory.json" (read only). Writes go to a temporary file that is renamed over
 * the document, so a reader sees the old or the new document, never a mixture. The facade
 * operations read the syntax version (0 or 1) of their document and call that version's
 * implementation with the same arguments.
 */
#ifndef ZT4CONFIG_CONFIG_H
#define ZT4CONFIG_CONFIG_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* The user document: new reference; NULL on failure. */
ZT4_API json_t* readJSONZT4ConfigFile(void) ZT4_NOEXCEPT;
/* Same operation as readJSONZT4ConfigFile. */
ZT4_API json_t* readJSONZT4UserConfigFile(void) ZT4_NOEXCEPT;
/* Replaces the user document by `json` (borrowed): 0 or -1. */
ZT4_API int writeJSONZT4ConfigFile(json_t* json) ZT4_NOEXCEPT;
/* Same operation as writeJSONZT4ConfigFile. */
ZT4_API int writeJSONZT4UserConfigFile(json_t* json) ZT4_NOEXCEPT;
/* The factory user document: new reference; NULL on failure. */
ZT4_API json_t* readJSONZT4FactoryConfigFile(void) ZT4_NOEXCEPT;
/* Same operation as readJSONZT4FactoryConfigFile. */
ZT4_API json_t* readJSONZT4FactoryUserConfigFile(void) ZT4_NOEXCEPT;
/* The system document: new reference; NULL on failure. */
ZT4_API json_t* readJSONZT4SystemFile(void) ZT4_NOEXCEPT;
/* Same operation as readJSONZT4SystemFile. */
ZT4_API json_t* readJSONZT4SystemConfigFile(void) ZT4_NOEXCEPT;
/* Replaces the system document by `json` (borrowed): 0 or -1. */
ZT4_API int writeJSONZT4SystemFile(json_t* json) ZT4_NOEXCEPT;
/* Same operation as writeJSONZT4SystemFile. */
ZT4_API int writeJSONZT4SystemConfigFile(json_t* json) ZT4_NOEXCEPT;
/* The factory system document: new reference; NULL on failure. */
ZT4_API json_t* readJSONZT4FactorySystemConfigFile(void) ZT4_NOEXCEPT;
/* Same operation as readJSONZT4FactorySystemConfigFile. */
ZT4_API json_t* readJSONZT4FactorySystemFile(void) ZT4_NOEXCEPT;

/* Syntax version of a document (borrowed): 1, or 0 for anything else (missing, other values). */
ZT4_API int readJSONSyntaxVersion(json_t* json) ZT4_NOEXCEPT;
/* Syntax version of the user file: 0 or 1 (0 when the file cannot be read). */
ZT4_API int readZT4UserConfigFileSyntaxVersion(void) ZT4_NOEXCEPT;
/* Syntax version of the factory user file: 0 or 1 (0 when the file cannot be read). */
ZT4_API int readZT4FactoryUserConfigFileSyntaxVersion(void) ZT4_NOEXCEPT;
/* Syntax version of the system file: 0 or 1 (0 when the file cannot be read). */
ZT4_API int readZT4SystemConfigFileSyntaxVersion(void) ZT4_NOEXCEPT;
/* Syntax version of the factory system file: 0 or 1 (0 when the file cannot be read). */
ZT4_API int readZT4FactorySystemConfigFileSyntaxVersion(void) ZT4_NOEXCEPT;

/* Merges the top-level members of `json` (borrowed) into the stored user document, existing
 * members first, then new ones, rewriting the file after each: result of the last write, or -1. */
ZT4_API int updateJSONZT4UserConfigFile(json_t* json) ZT4_NOEXCEPT;
/* The same merge into the stored system document: result of the last write, or -1. */
ZT4_API int updateJSONZT4SystemFile(json_t* json) ZT4_NOEXCEPT;

/* Channels array of a connector object (borrowed), by the user file's version: new reference or NULL. */
ZT4_API json_t* readJSONZT4Cnl(json_t* jsonConnector) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_CONFIG_H */
