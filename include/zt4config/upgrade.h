/* libzt4config: upgrade of the stored user configuration, its small targeted updates, the
 * static network lines of the daemons' flat file "/home/nvram/zt4.cfg", and the connector setup
 * table.
 *
 * The facade operations follow the syntax version of the user file, except
 * upgradeJSONZT4ConfigFile, which follows the factory user file's. Version 0 refuses every
 * operation of this family ("syntax version 0 is not supported", -1).
 */
#ifndef ZT4CONFIG_UPGRADE_H
#define ZT4CONFIG_UPGRADE_H

#include "zt4config/common.h"
#include "zt4config/record.h"

ZT4_BEGIN_DECLS

#define ZT4_SETUP_ROWS 7

/* Mode codes of connectors 1 to 6 when n (the row) connectors are three-phase. Constant. */
ZT4_API extern const uint8_t setupConnectors[ZT4_SETUP_ROWS][ZT4_CONNECTOR_COUNT];

/* Adds to the stored user document every top-level member only the factory document of its
 * version has, then rewrites it: 0 or -1. */
ZT4_API int upgradeJSONZT4ConfigFile(void) ZT4_NOEXCEPT;
/* Version 1 of upgradeJSONZT4ConfigFile, from "/etc/zt4config_factory_v1.json": 0 or -1. */
ZT4_API int upgradeJSONZT4UserConfigFileSyntaxVersion1(void) ZT4_NOEXCEPT;
/* Version 0 of upgradeJSONZT4ConfigFile: -1. */
ZT4_API int upgradeJSONZT4UserConfigFileSyntaxVersion0(void) ZT4_NOEXCEPT;

/* Radio transmit mode `mode` (0 or 1) applied to the stored frame format, written only when it
 * changes: 0 or -1. */
ZT4_API int updateJSONZT4ConfigRadioTransmitMode(uint8_t mode) ZT4_NOEXCEPT;
/* Version 1 of updateJSONZT4ConfigRadioTransmitMode ("FrameFormat" 3 for mode 1, 1 for mode 0): 0 or -1. */
ZT4_API int updateJSONZT4UserConfigRadioLoRaFrameFormatSyntaxVersion1(uint8_t mode) ZT4_NOEXCEPT;
/* Version 0 of updateJSONZT4ConfigRadioTransmitMode: -1. */
ZT4_API int updateJSONZT4UserConfigRadioLoRaTransmitModeSyntaxVersion0(uint8_t mode) ZT4_NOEXCEPT;

/* Stores `count` as the number of three-phase connectors, written only when it changes: 0 or -1. */
ZT4_API int updateJSONZT4ConfigSetupConnectors(uint8_t count) ZT4_NOEXCEPT;
/* Version 1 of updateJSONZT4ConfigSetupConnectors (Expert "NumberConnectorThreephase"): 0 or -1. */
ZT4_API int updateJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(uint8_t count) ZT4_NOEXCEPT;
/* Version 0 of updateJSONZT4ConfigSetupConnectors: -1. */
ZT4_API int updateJSONZT4UserConfigSetupConnectorsSyntaxVersion0(uint8_t count) ZT4_NOEXCEPT;

/* Rewrites the "Static_" lines of the flat file from `json` (borrowed: "AddressIP", "Netmask",
 * "GW", "Dns"); drops lines holding "//"; adds no line: 0 or -1. */
ZT4_API int updateZT4ConfigEthernet(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of updateZT4ConfigEthernet: 0 or -1. */
ZT4_API int updateZT4UserConfigEthernetSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of updateZT4ConfigEthernet: -1. */
ZT4_API int updateZT4UserConfigEthernetSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;
/* Rewrites the "DHCPD_" lines of the flat file from `json` (borrowed: "Enable", "AddressIP",
 * "Netmask", "StartIP", "EndIP"), like updateZT4ConfigEthernet: 0 or -1. */
ZT4_API int updateZT4ConfigWiFi(json_t* json) ZT4_NOEXCEPT;
/* Version 1 of updateZT4ConfigWiFi: 0 or -1. */
ZT4_API int updateZT4UserConfigWiFiSyntaxVersion1(json_t* json) ZT4_NOEXCEPT;
/* Version 0 of updateZT4ConfigWiFi: -1. */
ZT4_API int updateZT4UserConfigWiFiSyntaxVersion0(json_t* json) ZT4_NOEXCEPT;

/* Fills the six setup modes of `data` (caller-owned): 4, 4, 4, 1, 1, 0 unless the stored number
 * of three-phase connectors names a row of setupConnectors: 0, or -1 (the preset stays). */
ZT4_API int readZT4ConfigSetupConnectors(zt4Data* data) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_UPGRADE_H */
