/* libzt4config: sections of the user configuration ("/home/nvram/zt4config.json").
 *
 * Each operation follows the syntax version of the stored user document. Readers return the
 * stored section, or its defaults when the document lacks it. Writers check the new section
 * first: a section with a wrong type or value is refused whole (-1) and the document is left as
 * it was; missing keys are filled with their defaults; accepted keys are merged into the stored
 * section and the document is replaced atomically.
 */
#ifndef ZT4CONFIG_USER_H
#define ZT4CONFIG_USER_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* "Web" section: new reference, or NULL on failure. */
ZT4_API json_t* readJSONZT4ConfigWeb(void) ZT4_NOEXCEPT;
/* "RadioLoRa" section, empty keys filled from the radio's files: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigRadio(void) ZT4_NOEXCEPT;
/* "RadioLoRa" section with the radio's "DEVEUI" added: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigRadioWithDevEUI(void) ZT4_NOEXCEPT;
/* "WiFi" section: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigWiFi(void) ZT4_NOEXCEPT;
/* "Ethernet" section: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigEthernet(void) ZT4_NOEXCEPT;
/* "Modbus" section: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigModbus(void) ZT4_NOEXCEPT;
/* "BACnet" section: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigBACnet(void) ZT4_NOEXCEPT;

/* Section `json` (borrowed) checked and merged into "Web": 0, or -1 when refused or not written. */
ZT4_API int writeJSONZT4ConfigWeb(json_t* json) ZT4_NOEXCEPT;
/* The same for "RadioLoRa" (legacy "TransmitMode" is taken as "FrameFormat"): 0 or -1. */
ZT4_API int writeJSONZT4ConfigRadio(json_t* json) ZT4_NOEXCEPT;
/* The same for "WiFi", from the flat form {Enable, SSID, AddressIP, Netmask, StartIP, EndIP}: 0 or -1. */
ZT4_API int writeJSONZT4ConfigWiFi(json_t* json) ZT4_NOEXCEPT;
/* The same for "Ethernet": 0 or -1. */
ZT4_API int writeJSONZT4ConfigEthernet(json_t* json) ZT4_NOEXCEPT;
/* The same for "Modbus" (legacy "Version" and "ID" are taken as "MappingVersion" and "SlaveID"): 0 or -1. */
ZT4_API int writeJSONZT4ConfigModbus(json_t* json) ZT4_NOEXCEPT;
/* The same for "BACnet" (legacy "Version" is taken as "MappingVersion"): 0 or -1. */
ZT4_API int writeJSONZT4ConfigBACnet(json_t* json) ZT4_NOEXCEPT;

/* The number of three-phase connectors as {"Setup": n}: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigSetupConnectors(void) ZT4_NOEXCEPT;
/* Stores {"Setup": n} (borrowed) as the number of three-phase connectors: 0 or -1. */
ZT4_API int writeJSONZT4ConfigSetupConnectors(json_t* json) ZT4_NOEXCEPT;
/* The array of the six connectors: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigConnector(void) ZT4_NOEXCEPT;
/* Connector `id` (1 to 6) of the array: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigConnectorById(uint8_t id) ZT4_NOEXCEPT;
/* The array of six connectors (borrowed) checked and stored: 0, or -1 when refused or not written. */
ZT4_API int writeJSONZT4ConfigConnector(json_t* json) ZT4_NOEXCEPT;
/* Connector `id` (1 to 6) replaced by `json` (borrowed) once checked: 0 or -1. */
ZT4_API int writeJSONZT4ConfigConnectorById(json_t* json, uint8_t id) ZT4_NOEXCEPT;
/* The "Expert" section: new reference, or NULL. */
ZT4_API json_t* readJSONZT4ConfigExpert(void) ZT4_NOEXCEPT;
/* The "Expert" section (borrowed) checked and merged into the stored one: 0 or -1. */
ZT4_API int writeJSONZT4ConfigExpert(json_t* json) ZT4_NOEXCEPT;

/* Syntax-version implementations behind the operations above (the operations call the one
 * of the stored document's version). Same conventions: readers return a new reference or NULL,
 * writers borrow the section and return 0 or -1. Version 0 hands back stored sections as they
 * are and refuses every write ("syntax version 0 is not supported"). */
/* Syntax version 1. */
ZT4_API json_t* readJSONZT4UserConfigWebSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigRadioLoRaSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigWiFiSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigEthernetSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigModbusSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigBACnetSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigWebSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigModbusSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigConnectorsSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigExpertSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigExpertConnectorsSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Channel" arrays of the six connectors (resp. expert connectors), in connector order, as
 * one array: new reference, or NULL. */
ZT4_API json_t* readJSONZT4UserConfigConnectorChannelsSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigExpertConnectorChannelsSyntaxVersion1(void) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigConnectorByIdSyntaxVersion1(json_t* connector, uint8_t id) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigExpertSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(json_t* setup) ZT4_NOEXCEPT;

/* Syntax version 0. */
ZT4_API json_t* readJSONZT4UserConfigWebSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigRadioLoRaSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigWiFiSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigEthernetSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigModbusSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigBACnetSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigSetupConnectorsSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigConnectorsSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API json_t* readJSONZT4UserConfigExpertSyntaxVersion0(void) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigWebSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigRadioLoRaSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigWiFiSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigEthernetSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigModbusSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigBACnetSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigSetupConnectorsSyntaxVersion0(json_t* setup) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigConnectorsSyntaxVersion0(json_t* connectors) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigConnectorByIdSyntaxVersion0(json_t* connector, uint8_t id) ZT4_NOEXCEPT;
ZT4_API int writeJSONZT4UserConfigExpertSyntaxVersion0(json_t* section) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_USER_H */
