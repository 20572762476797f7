// The compliance rule functions of the user document, syntax version 1: one per level, each
// the description-driven check of that level under its own name.
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/compliance_rules.hpp"
#include "config/v1/document_sections.hpp"
#include "zt4config/compliance.h"

int complianceJSONZT4UserConfigSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::v1::kSyntaxSection, section, __func__);
}

int complianceJSONZT4UserConfigWebSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kWeb, section, __func__);
}

int complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kRadioLoRa, section, __func__);
}

int complianceJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kWiFi, section, __func__);
}

int complianceJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kEthernet, section, __func__);
}

int complianceJSONZT4UserConfigModbusSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kModbus, section, __func__);
}

int complianceJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kBACnet, section, __func__);
}

int complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kElectricalConfiguration, section, __func__);
}

int complianceJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kVoltageTransformer, section, __func__);
}

int complianceJSONZT4UserConfigConnectorSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kConnector, section, __func__);
}

int complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kConnectorChannelCommon, section, __func__);
}

int complianceJSONZT4UserConfigConnectorChannel3PSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kConnectorChannel3P, section, __func__);
}

int complianceJSONZT4UserConfigConnectorChannel1PSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kConnectorChannel1P, section, __func__);
}

int complianceJSONZT4UserConfigExpertSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpert, section, __func__);
}

int complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertSwell, section, __func__);
}

int complianceJSONZT4UserConfigExpertSagSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertSag, section, __func__);
}

int complianceJSONZT4UserConfigExpertSwellSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertSwell, section, __func__);
}

int complianceJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertCurrentAverageMax, section, __func__);
}

int complianceJSONZT4UserConfigExpertOverCurrentSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertOverCurrent, section, __func__);
}

int complianceJSONZT4UserConfigExpertConnectorSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertConnector, section, __func__);
}

int complianceJSONZT4UserConfigExpertConnectorChannelCommonSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertConnectorChannel, section, __func__);
}

int complianceJSONZT4UserConfigExpertConnectorChannel3PSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertConnectorChannel, section, __func__);
}

int complianceJSONZT4UserConfigExpertConnectorChannel1PSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::comply(zt4::sections::kExpertConnectorChannel, section, __func__);
}

int complianceJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors) noexcept {
    return zt4::v1::complyArray(zt4::sections::kElectricalConfiguration, "Connectors", connectors, __func__);
}

int complianceJSONZT4UserConfigExpertConnectorsSyntaxVersion1(json_t* connectors) noexcept {
    return zt4::v1::complyArray(zt4::sections::kExpert, "Connectors", connectors, __func__);
}
