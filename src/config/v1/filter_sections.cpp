// The filter functions of the user document, syntax version 1: one per level, each the
// description-driven filter of that level under its own name.
#include "common/log.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/document_sections.hpp"
#include "config/v1/filter_rules.hpp"
#include "zt4config/compliance.h"

int filterUserConfigSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::v1::kSyntaxSection, source, destination, __func__);
}

int filterUserConfigWebSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kWeb, source, destination, __func__);
}

int filterUserConfigRadioLoRaSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kRadioLoRa, source, destination, __func__);
}

int filterUserConfigWiFiSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kWiFi, source, destination, __func__);
}

int filterUserConfigEthernetSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kEthernet, source, destination, __func__);
}

int filterUserConfigModbusSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kModbus, source, destination, __func__);
}

int filterUserConfigBACnetSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kBACnet, source, destination, __func__);
}

int filterUserConfigElectricalConfigurationSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kElectricalConfiguration, source, destination, __func__);
}

int filterUserConfigVoltageTransformerSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kVoltageTransformer, source, destination, __func__);
}

int filterUserConfigConnectorSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kConnector, source, destination, __func__);
}

int filterUserConfigConnectorChannelCommonSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kConnectorChannelCommon, source, destination, __func__);
}

int filterUserConfigConnectorChannel3PSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kConnectorChannel3P, source, destination, __func__);
}

int filterUserConfigConnectorChannel1PSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kConnectorChannel1P, source, destination, __func__);
}

int filterUserConfigCurrentTransformerDirectionSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kCurrentTransformer, source, destination, __func__);
}

int filterUserConfigCurrentTransformerPrimarySyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kCurrentTransformerPrimary, source, destination, __func__);
}

int filterUserConfigExpertSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpert, source, destination, __func__);
}

int filterUserConfigExpertSagSwellSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterSharedPart(zt4::sections::kExpertSwell, source, destination, __func__);
}

int filterUserConfigExpertSagSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpertSag, source, destination, __func__);
}

int filterUserConfigExpertSwellSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpertSwell, source, destination, __func__);
}

int filterUserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpertCurrentAverageMax, source, destination, __func__);
}

int filterUserConfigExpertOverCurrentSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpertOverCurrent, source, destination, __func__);
}

int filterUserConfigExpertConnectorSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpertConnector, source, destination, __func__);
}

int filterUserConfigExpertConnectorChannelSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterObject(zt4::sections::kExpertConnectorChannel, source, destination, __func__);
}

int filterUserConfigConnectorsSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterArray(zt4::sections::kElectricalConfiguration, "Connectors", source, destination, __func__);
}

int filterUserConfigConnectorChannelsSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterArray(zt4::sections::kConnector, "Channel", source, destination, __func__);
}

int filterUserConfigCurrentTransformerSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterArray(zt4::sections::kConnectorChannelCommon, "CurrentTransformer", source, destination, __func__);
}

int filterUserConfigExpertPhasesSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterArray(zt4::sections::kExpertSag, "Phase", source, destination, __func__);
}

int filterUserConfigExpertConnectorsSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterArray(zt4::sections::kExpert, "Connectors", source, destination, __func__);
}

int filterUserConfigExpertConnectorChannelsSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    return zt4::v1::filterArray(zt4::sections::kExpertConnector, "Channel", source, destination, __func__);
}

// One expert phase: its "Enable".
int filterUserConfigExpertPhaseSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    if (source == nullptr || destination == nullptr) {
        zt4::logError(__func__, source == nullptr ? "Expert Phase NULL" : "Expert Phase Copy NULL");
        return -1;
    }
    json_t* enable = json_object_get(source, "Enable");
    if (enable != nullptr) json_object_set(destination, "Enable", enable);
    return 0;
}
