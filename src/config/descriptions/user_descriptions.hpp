// The descriptions of the user configuration's sections (syntax version 1). Shared by the section
// checks, and by whatever else needs the keys, types and rules of these sections.
#pragma once

#include "config/descriptions/section.hpp"

namespace zt4::sections {

// Network sections.
extern const Section kWeb;
extern const Section kRadioLoRa;
extern const Section kWiFi;
extern const Section kWiFiDhcp;
extern const Section kEthernet;
extern const Section kModbus;
extern const Section kBACnet;

// Electrical sections.
extern const Section kElectricalConfiguration;
extern const Section kVoltageTransformer;
extern const Section kConnectors;
extern const Section kConnector;
extern const Section kConnectorChannelCommon;
extern const Section kConnectorChannel3P;
extern const Section kConnectorChannel1P;
extern const Section kCurrentTransformers;
extern const Section kCurrentTransformer;
extern const Section kCurrentTransformerPrimary;
extern const Section kExpert;
extern const Section kExpertSag;
extern const Section kExpertSwell;
extern const Section kExpertCurrentAverageMax;
extern const Section kExpertOverCurrent;
extern const Section kExpertConnectors;
extern const Section kExpertConnector;
extern const Section kExpertConnectorChannel;
extern const Section kExpertCircuitBreakerTrip;

}  // namespace zt4::sections
