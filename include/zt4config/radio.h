/* LoRa radio parameters: identity and persistent state under /home/nvram, the radio daemon's
 * parameter files /var/tmp/radio<name>, three one-line user settings and the last-join time.
 *
 * Getters take a caller's buffer and its size: at most size-1 bytes of the file's first line are
 * copied (a trailing newline is kept when it fits) and the buffer is always terminated. Setters
 * take a text value. All return 0 on success and -1 on failure (logged), unless said otherwise.
 */
#ifndef ZT4CONFIG_RADIO_H
#define ZT4CONFIG_RADIO_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* Identifier lengths and group counts accepted by checkEUIformat. */
#define ZT4_EUI_LENGTH 23
#define ZT4_EUI_GROUPS 8
#define ZT4_KEY_LENGTH 47
#define ZT4_KEY_GROUPS 16

/* 0 when `text` (a trailing white-space character removed in place) is `length` characters of
 * `groups` groups separated by ":" 3 characters apart; -1 otherwise (logged). */
ZT4_API int checkEUIformat(char* text, size_t length, int groups) ZT4_NOEXCEPT;

/* Persistent radio state (/home/nvram). Setters write the value and a newline (at most 63
 * characters in all); the device EUI, application key, joined flag and local time are not
 * rewritten when the file already holds exactly the new value. */
/* 0 and the device EUI (format checked, newline removed), or -1. */
ZT4_API int getRadioDEVEUI(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 when the device EUI has the 8-group format and is stored (or unchanged), else -1. */
ZT4_API int setRadioDEVEUI(const char* value) ZT4_NOEXCEPT;
/* 0 and the application key (format checked, newline removed), or -1. */
ZT4_API int getRadioAPPKEY(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 when the application key has the 16-group format and is stored (or unchanged), else -1. */
ZT4_API int setRadioAPPKEY(const char* value) ZT4_NOEXCEPT;
/* 0 and the joined flag as stored (newline kept), or -1. */
ZT4_API int getRadioJoined(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores `value` as the joined flag, skipped when the file holds exactly `value`; 0 or -1. */
ZT4_API int writeRadioJoined(const char* value) ZT4_NOEXCEPT;
/* Stores the joined flag "1"; 0 or -1. */
ZT4_API int setRadioJoined(void) ZT4_NOEXCEPT;
/* Stores the joined flag "0"; 0 or -1. */
ZT4_API int clearRadioJoined(void) ZT4_NOEXCEPT;
/* 0 and the radio's local time as stored (newline kept), or -1. */
ZT4_API int readRadioLocalTime(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores the local time, skipped when the file holds exactly `value`; 0 or -1. */
ZT4_API int writeRadioLocalTime(const char* value) ZT4_NOEXCEPT;
/* 0 and the radio firmware version, or -1. */
ZT4_API int getRadioVersion(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores the radio firmware version; 0 or -1. */
ZT4_API int setRadioVersion(const char* value) ZT4_NOEXCEPT;
/* 0 and the radio's current region band, or -1. */
ZT4_API int getRadioRegionBand(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores the radio's current region band; 0 or -1. */
ZT4_API int setRadioRegionBand(const char* value) ZT4_NOEXCEPT;

/* User settings kept as one-line files (/home/nvram). */
/* 0 and the region band chosen by the user, or -1. */
ZT4_API int readUserConfigRadioRegionBand(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores the region band chosen by the user; 0 or -1. */
ZT4_API int writeUserConfigRadioRegionBand(const char* value) ZT4_NOEXCEPT;
/* 0 and the line frequency, or -1. */
ZT4_API int readUserConfigLineFrequency(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores the line frequency; 0 or -1. */
ZT4_API int writeUserConfigLineFrequency(const char* value) ZT4_NOEXCEPT;
/* 0 and the Ethernet IPv4 addressing mode, or -1. */
ZT4_API int readUserConfigEthernetIPv4Addressing(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Stores the Ethernet IPv4 addressing mode; 0 or -1. */
ZT4_API int writeUserConfigEthernetIPv4Addressing(const char* value) ZT4_NOEXCEPT;

/* The radio daemon's parameter files (/var/tmp/radio<name>). Identifiers are format checked on
 * get (newline removed) and on set; setters write the value as it is, without a newline. */
/* 0 and the first line of /var/tmp/radio<name> (newline kept), or -1 (missing, empty, a
 * null argument, or a name too long for the 64-byte device path). */
ZT4_API int getConfigRadio(const char* name, char* buffer, size_t size) ZT4_NOEXCEPT;
/* getConfigRadio, then the 8-group identifier format (newline removed); 0 or -1. */
ZT4_API int getConfigRadioKey16(const char* name, char* buffer, size_t size) ZT4_NOEXCEPT;
/* getConfigRadio, then the 16-group key format (newline removed); 0 or -1. */
ZT4_API int getConfigRadioKey32(const char* name, char* buffer, size_t size) ZT4_NOEXCEPT;
/* Writes the non-empty `value` as /var/tmp/radio<name>, without a newline; 0 or -1. */
ZT4_API int setConfigRadio(const char* name, const char* value) ZT4_NOEXCEPT;
/* Checks the 8-group identifier format, then setConfigRadio (trailing newline dropped); 0 or -1. */
ZT4_API int setConfigRadioKey16(const char* name, const char* value) ZT4_NOEXCEPT;
/* Checks the 16-group key format, then setConfigRadio (trailing newline dropped); 0 or -1. */
ZT4_API int setConfigRadioKey32(const char* name, const char* value) ZT4_NOEXCEPT;
/* 0 and "appeui" (8 groups), or -1. */
ZT4_API int getConfigRadioAppeui(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "deveui" (8 groups), or -1. */
ZT4_API int getConfigRadioDeveui(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "appkey" (16 groups), or -1. */
ZT4_API int getConfigRadioAppkey(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "nwkkey" (16 groups), or -1. */
ZT4_API int getConfigRadioNetworkKey(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "address" (8 groups), or -1. */
ZT4_API int getConfigRadioAddress(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "networkid" (8 groups), or -1. */
ZT4_API int getConfigRadioNetworkID(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "nwkskey" (8 groups, as the daemon publishes it), or -1. */
ZT4_API int getConfigRadioNetworkSKey(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "appskey" (8 groups, as the daemon publishes it), or -1. */
ZT4_API int getConfigRadioAppSKey(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "adr", or -1. */
ZT4_API int getConfigRadioADR(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "dr", or -1. */
ZT4_API int getConfigRadioDR(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "joined", or -1. */
ZT4_API int getConfigRadioJoined(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "networkstatus", or -1. */
ZT4_API int getConfigRadioNetworkStatus(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "drdone", or -1. */
ZT4_API int getConfigRadioDRMaxReached(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "version", or -1. */
ZT4_API int getConfigRadioVersion(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and "regionband", or -1. */
ZT4_API int getConfigRadioBand(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Writes "appeui" (8 groups); 0 or -1. */
ZT4_API int setConfigRadioAppeui(const char* value) ZT4_NOEXCEPT;
/* Writes "deveui" (8 groups); 0 or -1. */
ZT4_API int setConfigRadioDeveui(const char* value) ZT4_NOEXCEPT;
/* Writes "appkey" (16 groups); 0 or -1. */
ZT4_API int setConfigRadioAppkey(const char* value) ZT4_NOEXCEPT;
/* Writes "dr"; 0 or -1. */
ZT4_API int setConfigRadioDR(const char* value) ZT4_NOEXCEPT;
/* Writes "joined"; 0 or -1. */
ZT4_API int setConfigRadioJoined(const char* value) ZT4_NOEXCEPT;
/* Writes "networkstatus"; 0 or -1. */
ZT4_API int setConfigRadioNetworkStatus(const char* value) ZT4_NOEXCEPT;
/* Writes "version"; 0 or -1. */
ZT4_API int setConfigRadioVersion(const char* value) ZT4_NOEXCEPT;
/* Writes "regionband"; 0 or -1. */
ZT4_API int setConfigRadioRegionBand(const char* value) ZT4_NOEXCEPT;
/* Writes "localtime"; 0 or -1. */
ZT4_API int setConfigRadioLocalTime(const char* value) ZT4_NOEXCEPT;
/* Writes "epochtime"; 0 or -1. */
ZT4_API int setConfigRadioEpochTime(const char* value) ZT4_NOEXCEPT;

/* Time of the last join (/var/run/timestamp_join), under the file's write lock. */
/* 0 and the stored time in *timestamp (0 first), or -1 when missing, empty or unreadable. */
ZT4_API int getTimestampLastJoin(int32_t* timestamp) ZT4_NOEXCEPT;
/* Writes `timestamp` in decimal over the start of the file (not truncated); 0 or -1. */
ZT4_API int setTimestampLastJoin(int32_t timestamp) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_RADIO_H */
