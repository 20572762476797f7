// The descriptions of the system configuration's sections (syntax version 1): which keys each
// service section holds, their defaults and the rules they must pass.
#pragma once

#include "config/descriptions/section.hpp"

namespace zt4::sections {

extern const Section kSystemWeb;
extern const Section kSystemRadioLoRa;
extern const Section kSystemWiFi;
extern const Section kSystemEthernet;
extern const Section kSystemModbus;
extern const Section kSystemBACnet;
// One entry of the "Connectors" array: whether the connector is available.
extern const Section kSystemConnector;
// The "Expert" object with its eleven members, and the two member shapes besides the circuit
// breaker trip: the sag and the members that hold "Enable" alone.
extern const Section kSystemExpert;
extern const Section kSystemExpertSag;
extern const Section kSystemEnable;

}  // namespace zt4::sections
