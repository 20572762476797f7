/* Device identity and network information: one-line files published by the start-up scripts and
 * network daemons, the serial number, the Wi-Fi SSID and the device-information document.
 *
 * Readers take a caller's buffer and its size: at most size-1 bytes of the file's first line are
 * copied (a trailing newline is kept when it fits) and the buffer is always terminated.
 */
#ifndef ZT4CONFIG_DEVICE_H
#define ZT4CONFIG_DEVICE_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* 0 and the first line of /var/tmp/<name> ("hardware", "software", ...), or -1 (also empty). */
ZT4_API int getInfoDevice(const char* name, char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the first line of /home/nvram/<name> for "swupdateversion" or "swmainversion", or -1. */
ZT4_API int getSWInfoDevice(const char* name, char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the Ethernet MAC address (buffer zeroed first), or -1. */
ZT4_API int getMACAddressEthernet(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the Ethernet (bridge) IPv4 address (buffer zeroed first), or -1. */
ZT4_API int getIPAddressEthernet(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the Ethernet broadcast address (buffer zeroed first), or -1. */
ZT4_API int getBroadcastAddressEthernet(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the Ethernet netmask (buffer zeroed first), or -1. */
ZT4_API int getNetmaskAddressEthernet(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the Wi-Fi MAC address (buffer zeroed first), or -1. */
ZT4_API int getMACAddressWiFi(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 when the hardware version begins with "1." or "2.", else 1 (also when unreadable). */
ZT4_API int isHardwareBoardVersion3(void) ZT4_NOEXCEPT;
/* 1 when the hardware version begins with "3.2", else 0 (also when unreadable). */
ZT4_API int isHardwareBoardVersion3_2(void) ZT4_NOEXCEPT;
/* 0 when `text` is a dotted IPv4 address, else -1 (also for NULL). */
ZT4_API int isAddressIPv4(const char* text) ZT4_NOEXCEPT;
/* Number of characters written: the device EUI's 16 hexadecimal digits, with a blank after the
 * eighth when `spacing` is 1; -1 on failure (a serial number that does not fit is cut). */
ZT4_API int getSerialNumber(char* buffer, size_t size, int spacing) ZT4_NOEXCEPT;
/* 0 and the access point's SSID (up to its first blank) from /home/nvram/hostapd.conf, or -1. */
ZT4_API int getConfigWiFiSSID(char* buffer, size_t size) ZT4_NOEXCEPT;
/* Sets the string member "SSID" of the borrowed `object`; 0 or -1. */
ZT4_API int readSSID(json_t* object) ZT4_NOEXCEPT;
/* 0 and the main software version at production (/home/nvram/swmainversionproduction), or -1. */
ZT4_API int readMainSoftwareVersionProduction(char* buffer, size_t size) ZT4_NOEXCEPT;
/* 0 and the production version's numbers (patch 0 when absent), or -1 when it has no "x.y". */
ZT4_API int readFormatMainSoftwareVersionProduction(uint8_t* major, uint8_t* minor,
                                                    uint8_t* patch) ZT4_NOEXCEPT;
/* Sets the device-information members of the borrowed `object` (unreadable values left out);
 * 0 or -1. */
ZT4_API int readJSONZT4DeviceInfo(json_t* object) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_DEVICE_H */
