/* libzt4config: the flat parameter file "/home/nvram/zt4.cfg" that the daemons and start scripts
 * source, and the way back from it to the user configuration.
 *
 * Writers take an open, writable stream that the caller owns, write one "PREFIX_KEY=VALUE" line per
 * scalar member (integers as 32-bit unsigned decimals, reals narrowed to single precision with six
 * decimals, strings between double quotes without escaping), flush the stream and return 0, or -1
 * when an argument is missing or a member could not be written (the other lines are still
 * written). Facade writers follow the syntax version of the document they read; the version-0
 * implementations refuse ("syntax version 0 is not supported", -1).
 */
#ifndef ZT4CONFIG_EXPORT_H
#define ZT4CONFIG_EXPORT_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* One field of a section of the flat file, as the read-back looks for it: "SECTION_name". */
typedef struct zt4FlatField {
    char name[32];
    uint8_t type; /* 0 integer, 1 real, 2 string */
    int32_t defaultInteger;
    float defaultReal;
    char defaultString[48];
} zt4FlatField;
ZT4_STATIC_ASSERT(sizeof(zt4FlatField) == 92, "zt4FlatField: 32 + 1 (+3) + 4 + 4 + 48 bytes");

#define ZT4_FLAT_INTEGER 0
#define ZT4_FLAT_REAL 1
#define ZT4_FLAT_STRING 2


/* ---- User configuration, by the user file's syntax version */
/* One user section, prefixed "Radio" for RadioLoRa, "DHCPD" for WiFi, "Static" for Ethernet, else its name; a missing section writes nothing and gives 0. */
ZT4_API int setParameterConfig(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* The user "Web" section, as setParameterConfig: 0 or -1. */
ZT4_API int setParameterConfigWeb(FILE* stream) ZT4_NOEXCEPT;
/* The user "RadioLoRa" section, as setParameterConfig: 0 or -1. */
ZT4_API int setParameterConfigRadio(FILE* stream) ZT4_NOEXCEPT;
/* The user "WiFi" section, as setParameterConfig: 0 or -1. */
ZT4_API int setParameterConfigWiFi(FILE* stream) ZT4_NOEXCEPT;
/* The user "Ethernet" section, as setParameterConfig: 0 or -1. */
ZT4_API int setParameterConfigEthernet(FILE* stream) ZT4_NOEXCEPT;
/* The user "Modbus" section, as setParameterConfig: 0 or -1. */
ZT4_API int setParameterConfigModbus(FILE* stream) ZT4_NOEXCEPT;
/* The user "BACnet" section, as setParameterConfig: 0 or -1. */
ZT4_API int setParameterConfigBACnet(FILE* stream) ZT4_NOEXCEPT;
/* The user connectors and their channels ("Connector_1_Mode=4", ...): 0 or -1. */
ZT4_API int setParameterConfigConnector(FILE* stream) ZT4_NOEXCEPT;
/* Rewrites "/home/nvram/zt4.cfg" in place from the user and system documents: 0 or -1 (a failure leaves a partial file). */
ZT4_API int printZT4ConfigFile(void) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfig: 0 or -1. */
ZT4_API int setParameterUserConfigSyntaxVersion1(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigWeb: 0 or -1. */
ZT4_API int setParameterUserConfigWebSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigRadio: 0 or -1. */
ZT4_API int setParameterUserConfigRadioLoRaSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigWiFi: 0 or -1. */
ZT4_API int setParameterUserConfigWiFiSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigEthernet: 0 or -1. */
ZT4_API int setParameterUserConfigEthernetSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigModbus: 0 or -1. */
ZT4_API int setParameterUserConfigModbusSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigBACnet: 0 or -1. */
ZT4_API int setParameterUserConfigBACnetSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterConfigConnector: 0 or -1. */
ZT4_API int setParameterUserConfigConnectorsSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of printZT4ConfigFile: 0 or -1. */
ZT4_API int printZT4UserConfigFileSyntaxVersion1(void) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfig: 0 or -1. */
ZT4_API int setParameterUserConfigSyntaxVersion0(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigWeb: 0 or -1. */
ZT4_API int setParameterUserConfigWebSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigRadio: 0 or -1. */
ZT4_API int setParameterUserConfigRadioLoRaSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigWiFi: 0 or -1. */
ZT4_API int setParameterUserConfigWiFiSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigEthernet: 0 or -1. */
ZT4_API int setParameterUserConfigEthernetSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigModbus: 0 or -1. */
ZT4_API int setParameterUserConfigModbusSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigBACnet: 0 or -1. */
ZT4_API int setParameterUserConfigBACnetSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterConfigConnector: 0 or -1. */
ZT4_API int setParameterUserConfigConnectorsSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of printZT4ConfigFile: 0 or -1. */
ZT4_API int printZT4UserConfigFileSyntaxVersion0(void) ZT4_NOEXCEPT;

/* ---- System configuration, by the system file's syntax version */
/* One system section as "System_PREFIX_KEY=VALUE" (RadioLoRa: "System_Radio_Enable=1" first, its own Enable left out); a missing section gives 0. */
ZT4_API int setParameterSystem(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* The system "Device" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemDevice(FILE* stream) ZT4_NOEXCEPT;
/* The system "Web" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemWeb(FILE* stream) ZT4_NOEXCEPT;
/* The system "RadioLoRa" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemRadio(FILE* stream) ZT4_NOEXCEPT;
/* The system "WiFi" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemWiFi(FILE* stream) ZT4_NOEXCEPT;
/* The system "Ethernet" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemEthernet(FILE* stream) ZT4_NOEXCEPT;
/* The system "Modbus" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemModbus(FILE* stream) ZT4_NOEXCEPT;
/* The system "BACnet" section, as setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemBACnet(FILE* stream) ZT4_NOEXCEPT;
/* The system connectors, each with the electrical "Debug" value ("System_Connector_1_Enable=1"): 0 or -1. */
ZT4_API int setParameterSystemConnector(FILE* stream) ZT4_NOEXCEPT;
/* The members of the system "Expert" section ("System_Expert_Sag_Enable=1"): 0 or -1. */
ZT4_API int setParameterSystemExpert(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemSyntaxVersion1(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemDevice: 0 or -1. */
ZT4_API int setParameterSystemDeviceSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemWeb: 0 or -1. */
ZT4_API int setParameterSystemWebSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemRadio: 0 or -1. */
ZT4_API int setParameterSystemRadioLoRaSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemWiFi: 0 or -1. */
ZT4_API int setParameterSystemWiFiSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemEthernet: 0 or -1. */
ZT4_API int setParameterSystemEthernetSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemModbus: 0 or -1. */
ZT4_API int setParameterSystemModbusSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemBACnet: 0 or -1. */
ZT4_API int setParameterSystemBACnetSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemConnector: 0 or -1. */
ZT4_API int setParameterSystemConnectorsSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterSystemExpert: 0 or -1. */
ZT4_API int setParameterSystemExpertSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystem: 0 or -1. */
ZT4_API int setParameterSystemSyntaxVersion0(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemDevice: 0 or -1. */
ZT4_API int setParameterSystemDeviceSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemWeb: 0 or -1. */
ZT4_API int setParameterSystemWebSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemRadio: 0 or -1. */
ZT4_API int setParameterSystemRadioLoRaSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemWiFi: 0 or -1. */
ZT4_API int setParameterSystemWiFiSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemEthernet: 0 or -1. */
ZT4_API int setParameterSystemEthernetSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemModbus: 0 or -1. */
ZT4_API int setParameterSystemModbusSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemBACnet: 0 or -1. */
ZT4_API int setParameterSystemBACnetSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemConnector: 0 or -1. */
ZT4_API int setParameterSystemConnectorsSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterSystemExpert: 0 or -1. */
ZT4_API int setParameterSystemExpertSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;

/* ---- Factory system configuration, by the factory system file's syntax version */
/* One factory system section as "Factory_SECTION_KEY=VALUE", with the section name itself: 0 or -1. */
ZT4_API int setParameterFactorySystem(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* The factory system "Device" section, as setParameterFactorySystem: 0 or -1. */
ZT4_API int setParameterFactorySystemDevice(FILE* stream) ZT4_NOEXCEPT;
/* Version 1 of setParameterFactorySystem: 0 or -1. */
ZT4_API int setParameterFactorySystemSyntaxVersion1(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* Version 1 of setParameterFactorySystemDevice: 0 or -1. */
ZT4_API int setParameterFactorySystemDeviceSyntaxVersion1(FILE* stream) ZT4_NOEXCEPT;
/* Version 0 of setParameterFactorySystem: 0 or -1. */
ZT4_API int setParameterFactorySystemSyntaxVersion0(FILE* stream, const char* section) ZT4_NOEXCEPT;
/* Version 0 of setParameterFactorySystemDevice: 0 or -1. */
ZT4_API int setParameterFactorySystemDeviceSyntaxVersion0(FILE* stream) ZT4_NOEXCEPT;

/* ---- Generic writers of an object's scalar members (borrowed), no dispatch */
/* "prefix_KEY=VALUE" for each scalar member; empty strings are skipped, a key containing "OffsetIndex" is written only as -1; 0 or -1. */
ZT4_API int setParameterConfigJSON(FILE* stream, const char* prefix, json_t* json) ZT4_NOEXCEPT;
/* setParameterConfigJSON with the prefix "System_<section>" (47 characters at most): 0 or -1. */
ZT4_API int setParameterSystemJSON(FILE* stream, const char* section, json_t* json) ZT4_NOEXCEPT;
/* setParameterConfigJSON with the prefix "Factory_<section>" (47 characters at most): 0 or -1. */
ZT4_API int setParameterFactoryJSON(FILE* stream, const char* section, json_t* json) ZT4_NOEXCEPT;

/* ---- Reading the flat file back into user sections (syntax version 1) */
/* Object of the `size` (not 0) fields of `keyword`, each from its line "name_FIELD=..." of the flat file or its default: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigObject(const char* name, const zt4FlatField* keyword, size_t size) ZT4_NOEXCEPT;
/* The "Web" section read back from the flat file, defaults where it has no line: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigWebSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "RadioLoRa" section read back from the flat file, defaults where it has no line: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigRadioLoRaSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "WiFi" section read back from the flat file, defaults where it has no line: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigWiFiSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Ethernet" section read back from the flat file, defaults where it has no line: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigEthernetSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "Modbus" section read back from the flat file, defaults where it has no line: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigModbusSyntaxVersion1(void) ZT4_NOEXCEPT;
/* The "BACnet" section read back from the flat file, defaults where it has no line: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigBACnetSyntaxVersion1(void) ZT4_NOEXCEPT;
/* Six connectors with their defaults, updated from the "Connect_N_Cnl_M_..." lines: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigConnectorsSyntaxVersion1(void) ZT4_NOEXCEPT;
/* "ElectricalConfiguration" with a zero frequency and voltage, defaults and the connectors read back: new reference or NULL. */
ZT4_API json_t* readZT4JSONUserConfigElectricalConfigurationSyntaxVersion1(void) ZT4_NOEXCEPT;
/* Merges the sections read back from the flat file into the user document, by the factory user file's syntax version: 0 or -1. */
ZT4_API int printZT4JSONConfigFile(void) ZT4_NOEXCEPT;
/* Version 1 of printZT4JSONConfigFile: 0 or -1. */
ZT4_API int printZT4JSONUserConfigFileSyntaxVersion1(void) ZT4_NOEXCEPT;
/* Version 0 of printZT4JSONConfigFile: 0 or -1. */
ZT4_API int printZT4JSONUserConfigFileSyntaxVersion0(void) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_EXPORT_H */
