/* libzt4config: the documents of the device's web interface.
 *
 * Every operation logs one line at level 6 naming what the web interface reads or writes, then
 * follows the syntax version of the stored user document: a version-1 section is reshaped into
 * the web shape (the names of the older documents: "TransmitMode", "Version", "ID", "Setup", a
 * flat WiFi object without "SSID", connectors as "Cnl" arrays), a version-0 section already has
 * that shape and passes through. The connector and expert documents translate member by member
 * (README, "Web API"); a member that cannot be translated fails the whole call and nothing is
 * written. An unreadable version logs "Failed to read version configuration file".
 */
#ifndef ZT4CONFIG_WEBAPI_H
#define ZT4CONFIG_WEBAPI_H

#include "zt4config/common.h"
#include "zt4config/record.h"

ZT4_BEGIN_DECLS

/* The whole user document: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigFile(void) ZT4_NOEXCEPT;
/* The whole system document: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPISystemFile(void) ZT4_NOEXCEPT;
/* readJSONZT4DeviceInfo on the borrowed `object`: 0 or -1. */
ZT4_API int readJSONZT4WebAPIDeviceInfo(json_t* object) ZT4_NOEXCEPT;
/* readJSONZT4DataConnector on the borrowed register image and record: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIDataConnectors(const uint16_t* zt4Rg, const zt4Data* data) ZT4_NOEXCEPT;
/* The "Web" section: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigWeb(void) ZT4_NOEXCEPT;
/* "RadioLoRa" with "DEVEUI", "Protocol" "LoRa", "ADBitRate" 1 and "TransmitMode": new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigRadio(void) ZT4_NOEXCEPT;
/* The same document as readJSONZT4WebAPIConfigRadio: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigRadioWithDevEUI(void) ZT4_NOEXCEPT;
/* "WiFi" flat {Enable, AddressIP, Netmask, StartIP, EndIP}, without "SSID": new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigWiFi(void) ZT4_NOEXCEPT;
/* "Ethernet" (version 0: with "IPv4Addressing" from the addressing setting): new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigEthernet(void) ZT4_NOEXCEPT;
/* "Modbus" with "Version" and "ID": new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigModbus(void) ZT4_NOEXCEPT;
/* "BACnet" with "Version": new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigBACnet(void) ZT4_NOEXCEPT;
/* The number of three-phase connectors as {"Setup": n}: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigSetupConnectors(void) ZT4_NOEXCEPT;
/* The six connectors in web shape (array): new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigConnectors(void) ZT4_NOEXCEPT;
/* Connector `id` (1 to 6) in web shape: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigConnectorById(uint8_t id) ZT4_NOEXCEPT;
/* The expert options in web shape: new reference, or NULL. */
ZT4_API json_t* readJSONZT4WebAPIConfigExpert(void) ZT4_NOEXCEPT;

/* Replaces the user document by `json` (borrowed): 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigFile(json_t* json) ZT4_NOEXCEPT;
/* Replaces the system document by `json` (borrowed): 0 or -1. */
ZT4_API int writeJSONZT4WebAPISystemFile(json_t* json) ZT4_NOEXCEPT;
/* The web-shaped section `json` (borrowed) checked and stored: 0, or -1 when refused. */
ZT4_API int writeJSONZT4WebAPIConfigWeb(json_t* json) ZT4_NOEXCEPT;
/* The same for "RadioLoRa" ("Protocol", "ADBitRate" and "DEVEUI" are not stored): 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigRadio(json_t* json) ZT4_NOEXCEPT;
/* The same for the flat "WiFi" document: 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigWiFi(json_t* json) ZT4_NOEXCEPT;
/* The flat "WiFi" document with its "SSID": 0 or -1 (version 0: -1 without a message). */
ZT4_API int writeJSONZT4WebAPIConfigWiFiSSID(json_t* json) ZT4_NOEXCEPT;
/* The same for "Ethernet" (version 0: "IPv4Addressing" goes to the addressing setting): 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigEthernet(json_t* json) ZT4_NOEXCEPT;
/* The same for "Modbus" ("Version", "ID"): 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigModbus(json_t* json) ZT4_NOEXCEPT;
/* The same for "BACnet" ("Version"): 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigBACnet(json_t* json) ZT4_NOEXCEPT;
/* {"Setup": n} (borrowed) stored as the number of three-phase connectors: 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigSetupConnectors(json_t* json) ZT4_NOEXCEPT;
/* The web-shaped connectors array (borrowed) translated, checked and stored: 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigConnectors(json_t* json) ZT4_NOEXCEPT;
/* Web-shaped connector `id` (1 to 6, borrowed) translated, checked and stored: 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigConnectorById(json_t* json, uint8_t id) ZT4_NOEXCEPT;
/* The web-shaped expert options (borrowed) translated, checked and stored: 0 or -1. */
ZT4_API int writeJSONZT4WebAPIConfigExpert(json_t* json) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_WEBAPI_H */
