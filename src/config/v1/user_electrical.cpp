// The electrical sections of the user configuration, syntax version 1: checks.
#include "config/sections/engine.hpp"
#include "config/sections/user_sections.hpp"
#include "config/v1/user_checks.hpp"

namespace sections = zt4::sections;

json_t* checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kElectricalConfiguration, section, status);
}

json_t* checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kVoltageTransformer, section, status);
}

json_t* checkJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectors, connectors, status);
}

json_t* checkJSONZT4UserConfigConnectorSyntaxVersion1(json_t* connector, std::int8_t* status) noexcept {
    return sections::check(sections::kConnector, connector, status);
}

json_t* checkJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectorChannelCommon, channel, status);
}

json_t* checkJSONZT4UserConfigConnectorChannel1PSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectorChannel1P, channel, status);
}

json_t* checkJSONZT4UserConfigConnectorChannel3PSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectorChannel3P, channel, status);
}

json_t* checkJSONZT4UserConfigExpertSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kExpert, section, status);
}

json_t* checkJSONZT4UserConfigExpertSagSyntaxVersion1(json_t* sag, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertSag, sag, status);
}

json_t* checkJSONZT4UserConfigExpertSwellSyntaxVersion1(json_t* swell, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertSwell, swell, status);
}

json_t* checkJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* object, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertCurrentAverageMax, object, status);
}

json_t* checkJSONZT4UserConfigExpertOverCurrentSyntaxVersion1(json_t* object, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertOverCurrent, object, status);
}

json_t* checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertConnectors, connectors, status);
}

json_t* checkJSONZT4UserConfigExpertConnector3PSyntaxVersion1(json_t* connector, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertConnector, connector, status);
}

json_t* checkJSONZT4UserConfigExpertConnectorChannelSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertConnectorChannel, channel, status);
}

json_t* checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1(json_t* object, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertCircuitBreakerTrip, object, status);
}
