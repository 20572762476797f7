/* libzt4config: the system configuration, the device's description of what it offers.
 *
 * Readers take a fresh copy of the stored document at each call; nothing is cached. Each facade
 * operation reads the system file's syntax version and calls that version's implementation.
 */
#ifndef ZT4CONFIG_SYSTEM_H
#define ZT4CONFIG_SYSTEM_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* Section readers of the system document. Version 1 gives the stored section; version 0 gives
 * the stored section unchanged. Each returns a new reference, or NULL on failure. */
/* The "Device" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemDevice(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemDevice: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemDeviceSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemDevice: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemDeviceSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Web" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemWeb(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemWeb: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemWebSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemWeb: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemWebSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "RadioLoRa" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemRadio(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemRadio: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemRadioLoRaSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemRadio: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemRadioLoRaSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "WiFi" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemWiFi(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemWiFi: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemWiFiSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemWiFi: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemWiFiSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Ethernet" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemEthernet(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemEthernet: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemEthernetSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemEthernet: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemEthernetSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Modbus" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemModbus(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemModbus: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemModbusSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemModbus: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemModbusSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "BACnet" section of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemBACnet(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemBACnet: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemBACnetSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemBACnet: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemBACnetSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Connectors" array of "ElectricalConfiguration" of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemConnector(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemConnector: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemConnectorsSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemConnector: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemConnectorsSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Expert" object of "ElectricalConfiguration" of the system document, by its version: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemExpert(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4SystemExpert: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemExpertSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4SystemExpert: new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemExpertSyntaxVersion1(void) ZT4_NOEXCEPT;

/* The "Device" section of the factory system document, by that file's version: new reference or NULL. */
ZT4_API json_t* readJSONZT4FactorySystemDevice(void) ZT4_NOEXCEPT;
/* Version 0 of readJSONZT4FactorySystemDevice: new reference or NULL. */
ZT4_API json_t* readJSONZT4FactorySystemDeviceSyntaxVersion0(void) ZT4_NOEXCEPT;
/* Version 1 of readJSONZT4FactorySystemDevice: new reference or NULL. */
ZT4_API json_t* readJSONZT4FactorySystemDeviceSyntaxVersion1(void) ZT4_NOEXCEPT;

/* System connector `id` (1 to 6) out of readJSONZT4SystemConnector(): new reference or NULL. */
ZT4_API json_t* readJSONZT4SystemConnectorById(uint8_t id) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_SYSTEM_H */
