/* libzt4config: compliance and filtering of a new user document.
 *
 * A new user document is taken up whole: it must hold every section and key of its syntax
 * version, each valid (no default is applied, nothing is repaired); it is then filtered into a
 * copy holding only the known keys, which is checked again and written as the user document.
 * A failing document is reported by the number of its first failing top-level section:
 * 1 "Syntax", 2 "Web", 3 "RadioLoRa", 4 "WiFi", 5 "Ethernet", 6 "Modbus", 7 "BACnet",
 * 8 "ElectricalConfiguration". Documents and sections are borrowed.
 */
#ifndef ZT4CONFIG_COMPLIANCE_H
#define ZT4CONFIG_COMPLIANCE_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

/* Takes up the candidate file `path` as the user document: 0 when it complied and was written;
 * -1 otherwise, with the failing section's number in *section when compliance failed. */
ZT4_API int checkComplianceUserConfigFile(const char* path, uint8_t* section) ZT4_NOEXCEPT;
/* Compliance of a whole version-1 document: 0, or -1 with the failing section number in *section. */
ZT4_API int checkComplianceUserConfigFileSyntaxVersion1(json_t* json, uint8_t* section) ZT4_NOEXCEPT;
/* Version 0 of the whole-document compliance: not supported, -1. */
ZT4_API int checkComplianceUserConfigFileSyntaxVersion0(json_t* json, uint8_t* section) ZT4_NOEXCEPT;
/* Filters a whole version-1 document into `destination` (an empty object the caller made): 0,
 * or -1 with `destination` untouched. Values are shared with `source`. */
ZT4_API int filterUserConfigFileSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Version 0 of the whole-document filter: not supported, -1. */
ZT4_API int filterUserConfigFileSyntaxVersion0(json_t* source, json_t* destination) ZT4_NOEXCEPT;

/* Compliance of one level of a version-1 document (NULL is refused): 0 or -1. */
/* Compliance of the "Syntax" object: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "Web": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigWebSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "RadioLoRa": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "WiFi": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "Ethernet": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "Modbus": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigModbusSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "BACnet": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "ElectricalConfiguration": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "VoltageTransformer": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of one connector: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigConnectorSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of the keys every channel has: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of the channel of a three-phase connector: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigConnectorChannel3PSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of one channel of a monophase connector: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigConnectorChannel1PSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "Expert": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of a sag or swell object: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "Sag": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertSagSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "Swell": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertSwellSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "CurrentAverageMax": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of "OverCurrent": 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertOverCurrentSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of one expert connector: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertConnectorSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of one expert channel: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertConnectorChannelCommonSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of the expert channel of a three-phase connector: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertConnectorChannel3PSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of one expert channel of a monophase connector: 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertConnectorChannel1PSyntaxVersion1(json_t* section) ZT4_NOEXCEPT;
/* Compliance of the six connectors (an array of exactly 6): 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors) ZT4_NOEXCEPT;
/* Compliance of the six expert connectors (an array of exactly 6): 0 or -1. */
ZT4_API int complianceJSONZT4UserConfigExpertConnectorsSyntaxVersion1(json_t* connectors) ZT4_NOEXCEPT;

/* Filters of one level of a version-1 document: copy the known keys of `source` into
 * `destination` (made by the caller, an object or for arrays an array): 0 or -1. */
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigWebSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigRadioLoRaSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigWiFiSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigEthernetSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigModbusSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigBACnetSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigElectricalConfigurationSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigVoltageTransformerSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigConnectorSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigConnectorChannelCommonSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigConnectorChannel3PSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigConnectorChannel1PSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigCurrentTransformerDirectionSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigCurrentTransformerPrimarySyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertSagSwellSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertSagSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertSwellSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertOverCurrentSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertConnectorSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertConnectorChannelSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Array filter (array into array): 0 or -1. */
ZT4_API int filterUserConfigConnectorsSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Array filter (array into array): 0 or -1. */
ZT4_API int filterUserConfigConnectorChannelsSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Array filter (array into array): 0 or -1. */
ZT4_API int filterUserConfigCurrentTransformerSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Array filter (array into array): 0 or -1. */
ZT4_API int filterUserConfigExpertPhasesSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Array filter (array into array): 0 or -1. */
ZT4_API int filterUserConfigExpertConnectorsSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Array filter (array into array): 0 or -1. */
ZT4_API int filterUserConfigExpertConnectorChannelsSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;
/* Level filter of one expert phase (object into object): 0 or -1. */
ZT4_API int filterUserConfigExpertPhaseSyntaxVersion1(json_t* source, json_t* destination) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_COMPLIANCE_H */
