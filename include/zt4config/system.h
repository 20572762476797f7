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

/* Creators of default system sections. The argument is the availability (0 or 1) set in every
 * "Enable" of the result, or for the connectors the number of available connectors. */
/* {"Enable": enable}, by the system file's version: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemEnable(uint8_t enable) ZT4_NOEXCEPT;
/* Version 0 of createJSONZT4SystemEnable: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemEnableSyntaxVersion0(uint8_t enable) ZT4_NOEXCEPT;
/* Version 1 of createJSONZT4SystemEnable: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemEnableSyntaxVersion1(uint8_t enable) ZT4_NOEXCEPT;
/* {"Enable": enable, "Cycle": 1}, the default sag: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemSagEnableSyntaxVersion1(uint8_t enable) ZT4_NOEXCEPT;
/* The default "RadioLoRa" section, by the system file's version: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemRadio(uint8_t enable) ZT4_NOEXCEPT;
/* Version 0 of createJSONZT4SystemRadio: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemRadioLoRaSyntaxVersion0(uint8_t enable) ZT4_NOEXCEPT;
/* Version 1 of createJSONZT4SystemRadio: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemRadioLoRaSyntaxVersion1(uint8_t enable) ZT4_NOEXCEPT;
/* One default connector {"Enable": enable}, by the system file's version: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemConnector(uint8_t enable) ZT4_NOEXCEPT;
/* Version 0 of createJSONZT4SystemConnector: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemConnectorSyntaxVersion0(uint8_t enable) ZT4_NOEXCEPT;
/* Version 1 of createJSONZT4SystemConnector: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemConnectorSyntaxVersion1(uint8_t enable) ZT4_NOEXCEPT;
/* Six connectors, the first `count` available, by the system file's version: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemConnectors(uint8_t count) ZT4_NOEXCEPT;
/* Version 0 of createJSONZT4SystemConnectors: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemConnectorsSyntaxVersion0(uint8_t count) ZT4_NOEXCEPT;
/* Version 1 of createJSONZT4SystemConnectors: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemConnectorsSyntaxVersion1(uint8_t count) ZT4_NOEXCEPT;
/* The default "Expert" object with its eleven members, by the system file's version: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemExpert(uint8_t enable) ZT4_NOEXCEPT;
/* Version 0 of createJSONZT4SystemExpert: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemExpertSyntaxVersion0(uint8_t enable) ZT4_NOEXCEPT;
/* Version 1 of createJSONZT4SystemExpert: new reference or NULL. */
ZT4_API json_t* createJSONZT4SystemExpertSyntaxVersion1(uint8_t enable) ZT4_NOEXCEPT;

/* Section writers of the system document. Each checks a copy of `json` (borrowed), filling in
 * missing keys; an invalid section is logged and refused but the result is 0. A valid one is
 * merged into the stored document: service sections update the stored section, RadioLoRa
 * replaces it, Connectors and Expert update "ElectricalConfiguration" where it has them. */
/* Writes "Web" (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemWeb(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemWeb: 0 or -1. */
ZT4_API int writeJSONZT4SystemWebSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemWeb: 0 or -1. */
ZT4_API int writeJSONZT4SystemWebSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes "RadioLoRa" (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemRadio(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemRadio: 0 or -1. */
ZT4_API int writeJSONZT4SystemRadioLoRaSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemRadio: 0 or -1. */
ZT4_API int writeJSONZT4SystemRadioLoRaSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes "WiFi" (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemWiFi(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemWiFi: 0 or -1. */
ZT4_API int writeJSONZT4SystemWiFiSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemWiFi: 0 or -1. */
ZT4_API int writeJSONZT4SystemWiFiSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes "Ethernet" (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemEthernet(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemEthernet: 0 or -1. */
ZT4_API int writeJSONZT4SystemEthernetSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemEthernet: 0 or -1. */
ZT4_API int writeJSONZT4SystemEthernetSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes "Modbus" (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemModbus(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemModbus: 0 or -1. */
ZT4_API int writeJSONZT4SystemModbusSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemModbus: 0 or -1. */
ZT4_API int writeJSONZT4SystemModbusSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes "BACnet" (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemBACnet(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemBACnet: 0 or -1. */
ZT4_API int writeJSONZT4SystemBACnetSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemBACnet: 0 or -1. */
ZT4_API int writeJSONZT4SystemBACnetSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes the "Connectors" array (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemConnector(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemConnector: 0 or -1. */
ZT4_API int writeJSONZT4SystemConnectorsSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemConnector: 0 or -1. */
ZT4_API int writeJSONZT4SystemConnectorsSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Writes the "Expert" object (borrowed), by the system file's version: 0 (also when refused) or -1. */
ZT4_API int writeJSONZT4SystemExpert(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of writeJSONZT4SystemExpert: 0 or -1. */
ZT4_API int writeJSONZT4SystemExpertSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of writeJSONZT4SystemExpert: 0 or -1. */
ZT4_API int writeJSONZT4SystemExpertSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_SYSTEM_H */
